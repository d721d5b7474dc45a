#include "controls/import/ImportList.h"

#include "controls/import/AddSourceFilesDialog.h"
#include "controls/parts/Handler.h"
#include "platform/QvError.h"
#include "tools/import/SourceImport.h"

using namespace Qt::StringLiterals;

namespace {

QString pagesText(qsizetype count)
{
    return count == 1 ? ImportList::tr("1 page") : ImportList::tr("%1 pages").arg(count);
}

QString commandName(const ImportPlan &plan)
{
    const QString pages = pagesText(totalsOf(plan).pages);
    return plan.command == ImportCommand::NewerFiles
               ? ImportList::tr("Re-import %1 of %2").arg(pages, plan.book.name)
               : ImportList::tr("Add %1 to %2").arg(pages, plan.book.name);
}

QString doneText(const ImportPlan &plan, qsizetype pages)
{
    return plan.command == ImportCommand::NewerFiles
               ? ImportList::tr("Taken again from their sources: %1 of the book %2.")
                     .arg(pagesText(pages), plan.book.name)
               : ImportList::tr("Added to the book %2: %1.").arg(pagesText(pages), plan.book.name);
}

} // namespace

ImportList::ImportList(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_window(window)
{
}

void ImportList::decide(const ImportPlan &plan)
{
    auto *list = new AddSourceFilesDialog(m_session.program().files, plan, m_window);
    list->setAttribute(Qt::WA_DeleteOnClose);
    connect(list, &QDialog::finished, this, [this, list](int result) {
        if (result == QDialog::Accepted)
            run(list->plan());
        Q_EMIT closed();
    });
    list->open();
}

void ImportList::run(const ImportPlan &plan)
{
    handled(m_session.program(), [&] {
        // A page that is being edited may be one that is replaced.
        if (!m_session.mayLeave())
            return;
        if (m_session.projectName() != plan.project)
            throw QvError(
                InvalidCall, {},
                tr("The project %1 is no longer open. Nothing was added.").arg(plan.project));
        Program &program = m_session.program();
        const QString fresh = m_session.binPlace(u"Added"_s);
        ImportResult result;
        const bool changed = m_session.performPrepared(
            commandName(plan), tr("Adding files..."), [&](const Progress &progress) {
                result = SourceImport(program.session, program.files).stage(plan, fresh, progress);
                return result.changes;
            });
        if (!changed)
            return;
        Q_EMIT m_session.done(doneText(plan, result.pages.size()));
        Q_EMIT added();
        if (!result.notes.isEmpty())
            program.messages.show({result.notes.join(u'\n')});
    });
}
