// The link report as a file: the report that is generated once, and Save as.
#include "reports/frmIBLReport.h"

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/SystemLocale.h"
#include "reports/LocalLinks.h"
#include "resources/Texts.h"
#include "ui_frmIBLReport.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

constexpr auto saveFilter =
    "Text(*.txt)|*.txt|CSV(*.csv)|*.csv|Web page(*.html;*.htm)|*.html;*.htm"_L1;

} // namespace

// All links as they were listed, whatever the filter shows.
void frmIBLReport::cmdGenerateReport_Click()
{
    const QString folder = m_kind == IBS ? u"C:\\IBS_Report\\"_s : u"C:\\IBD_Report\\"_s;
    const QString advice = tr("The report is written once; where the folder %1 is already there, "
                              "it is not written again. Save as... writes the list at any time.")
                               .arg(folder);
    const auto generate = [&] {
        const QString file = newReportFile(folder);
        const auto report = [this](const Progress &progress) {
            const LinkEntries &links = m_model->links();
            return reportText({links, allLinks(links)}, progress);
        };
        bool written = false;
        const auto undo = qScopeGuard([&] {
            // An empty folder would keep the report from being written later.
            if (!written && !file.isEmpty())
                trap([](const QvError &) {},
                     [&] { m_program.files.removeFolder(withoutBackslash(folder)); });
        });
        written = write(file, report);
        if (!written)
            return;
        m_program.messages.show({text(Text::ReportComplete) + file});
        saySaved(file);
    };
    inProcedure("cmdGenerateReport_Click"_L1, generate, advice);
}

/// The file to write, in its folder, which is made; "" when the folder is there already.
QString frmIBLReport::newReportFile(const QString &folder)
{
    if (m_program.files.folderExists(folder))
        return {};
    m_program.files.makeFolder(withoutBackslash(folder));
    const QString date = m_program.locale.shortDate(m_program.clock.now().date());
    const QString file = folder + u"IBD_Report_"_s + QString(date).replace(u'/', u'_') + u".txt"_s;
    m_program.messages.show({text(Text::ReportWillBeSavedAt) + file});
    return file;
}

/// False when the author pressed Stop; then nothing is written.
bool frmIBLReport::write(const QString &file,
                         const std::function<QByteArray(const Progress &)> &content)
{
    if (file.isEmpty())
        throw QvError(InvalidCall, {}, u"Invalid procedure call or argument"_s);
    const auto work = [&](const Progress &progress) {
        m_program.files.replaceFile(file, content(progress));
    };
    ui->lblMessage->clear();
    if (runUntilStopped(tr("Writing the report..."), work))
        return true;
    ui->lblMessage->setText(tr("Writing was stopped. Nothing was saved."));
    return false;
}

void frmIBLReport::cmdSaveAs_Click()
{
    const QString name = u"%1_Report_%2.txt"_s.arg(
        m_kind == IBD ? "IBD"_L1 : "IBS"_L1, m_program.clock.now().date().toString(Qt::ISODate));
    const QString file = m_program.fileDialogs.saveFile(tr("Save the list"),
                                                        parentFolder(m_savedAs) + name, saveFilter);
    if (file.isEmpty())
        return;
    const auto shape = [&](const QvError &error) {
        return Message{.text = tr("The list cannot be saved as %1").arg(file),
                       .details = error.description()};
    };
    trapped(shape, [&] {
        m_model->finishFilter();
        const auto list = [&, head = head()](const Progress &progress) {
            return content(file, head, progress);
        };
        if (!write(file, list))
            return;
        m_savedAs = file;
        saySaved(file);
    });
}

ReportHead frmIBLReport::head() const
{
    const QString kind = text(m_kind == IBD ? Text::IbdReport : Text::IbsReport).remove(u'&');
    return {text(Text::LinkReport) + u" - "_s + kind, ui->lblDateTimeValue->text(),
            ui->lblCounts->text()};
}

/// What the list shows, as the kind of file that the name's ending says.
QByteArray frmIBLReport::content(const QString &file, const ReportHead &head,
                                 const Progress &progress) const
{
    const ListedLinks list{m_model->links(), m_model->shown()};
    const QString ending = file.section(u'.', -1).toLower();
    if (ending == "csv"_L1)
        return reportCsv(list, progress);
    if (ending != "html"_L1 && ending != "htm"_L1)
        return reportText(list, progress);
    LocalLinks local(m_program.files, list.links, m_kind == IBD);
    const auto link = [&](const QString &address) { return local.urlOf(address); };
    return reportHtml(list, head, link, progress);
}

void frmIBLReport::saySaved(const QString &file)
{
    ui->lblMessage->setText(tr("Saved as %1").arg(m_program.files.nativePath(file)));
}
