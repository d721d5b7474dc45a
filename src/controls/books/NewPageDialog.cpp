#include "controls/books/NewPageDialog.h"

#include "controls/books/PageCommands.h"
#include "controls/books/PagePlaces.h"
#include "controls/books/PageRules.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

NewPageDialog::NewPageDialog(ProjectSession &session, const TocBook &book,
                             const OutlinePlace &place, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_book(book)
    , m_title(new CheckedField(u"txtNewPageTitle"_s, tr("Title of the page"),
                               &PageRules::titleProblem, {}, this))
    , m_file(new CheckedField(
          u"txtNewPageFile"_s, tr("File of the page"),
          [this](const QString &text) { return fileProblem(text); }, {}, this))
    , cboPlace(new QComboBox(this))
    , cmdCreate(new QPushButton(tr("&Create page"), this))
{
    setObjectName(u"NewPageDialog"_s);
    setWindowTitle(tr("New page in %1").arg(book.name));
    layOut();
    offerPlaces(place);
    connect(m_title, &CheckedField::edited, this, &NewPageDialog::proposeFile);
    connect(m_title, &CheckedField::edited, this, &NewPageDialog::judge);
    connect(m_file, &CheckedField::edited, this, &NewPageDialog::judge);
    judge();
}

void NewPageDialog::layOut()
{
    cboPlace->setObjectName(u"cboPagePlace"_s);
    cboPlace->setAccessibleName(tr("Place in the book"));
    auto *form = new QFormLayout;
    form->addRow(tr("&Title:"), m_title);
    form->addRow(tr("&File:"), m_file);
    form->addRow(tr("&Place:"), cboPlace);

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdCreate, QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    cmdCreate->setObjectName(u"cmdCreatePage"_s);
    cmdCreate->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &NewPageDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &NewPageDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    m_title->setFocus();
}

void NewPageDialog::offerPlaces(const OutlinePlace &place)
{
    if (const auto page = pageOfBook(m_session, m_book, place.page)) {
        const QString title =
            fontMetrics().elidedText(page->title.isEmpty() ? page->file : page->title,
                                     Qt::ElideMiddle, fontMetrics().averageCharWidth() * 40);
        m_places = {{OutlinePlace::Where::Before, page->id},
                    {OutlinePlace::Where::After, page->id},
                    {OutlinePlace::Where::Below, page->id}};
        cboPlace->addItems(
            {tr("before %1").arg(title), tr("after %1").arg(title), tr("below %1").arg(title)});
    }
    m_places.append(OutlinePlace{});
    cboPlace->addItem(tr("at the end of the book"));
    for (int row = 0; row < m_places.size(); ++row) {
        if (m_places.at(row).page == place.page && m_places.at(row).where == place.where)
            cboPlace->setCurrentIndex(row);
    }
}

QString NewPageDialog::title() const
{
    return m_title->text();
}

// Follows the title until the author enters a file.
void NewPageDialog::proposeFile()
{
    if (m_file->isEdited())
        return;
    QString file;
    trap([](const QvError &) {},
         [&] { file = PageCommands(m_session).proposedFile(m_book, m_title->text()); });
    m_file->setText(m_title->text().isEmpty() ? QString() : file);
}

QString NewPageDialog::fileProblem(const QString &file) const
{
    if (file.isEmpty())
        return tr("Enter a file name.");
    if (!isSafeName(file) || file.contains(u'#') || file.contains(u'%'))
        return tr("A file cannot be named \"%1\".").arg(file);
    if (!file.endsWith(".htm"_L1, Qt::CaseInsensitive)
        && !file.endsWith(".html"_L1, Qt::CaseInsensitive))
        return tr("The name of a page's file ends in .htm or .html.");
    QString problem;
    trap([&](const QvError &error) { problem = error.description(); },
         [&] {
             const BookFile book(m_session.program().session, m_session.program().files);
             if (m_session.program().files.exists(
                     book.pagePath(m_session.projectName(), m_book, file)))
                 problem = tr("There is a file \"%1\" in the book already.").arg(file);
         });
    return problem;
}

void NewPageDialog::judge()
{
    const QString ofTitle = m_title->problem();
    const QString problem = ofTitle.isEmpty() ? m_file->problem() : ofTitle;
    cmdCreate->setEnabled(problem.isEmpty());
    cmdCreate->setToolTip(problem);
}

void NewPageDialog::accept()
{
    m_id = handled(m_session.program(), [this] {
        return PageCommands(m_session).add(m_book, m_title->text(), m_file->text(),
                                           m_places.at(cboPlace->currentIndex()));
    });
    if (!m_id.isEmpty())
        QDialog::accept();
}
