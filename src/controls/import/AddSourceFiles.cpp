#include "controls/import/AddSourceFiles.h"

#include "controls/import/AddSourceFilesDialog.h"
#include "controls/parts/Handler.h"
#include "startup/frmProgBar.h"
#include "tools/SourceImport.h"

AddSourceFiles::AddSourceFiles(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_window(window)
{
}

void AddSourceFiles::begin(const QStringList &picked)
{
    if (!m_session.currentBook())
        return;
    handled(m_session.program(), [&] {
        Program &program = m_session.program();
        const TocBook book = *m_session.currentBook();
        ImportPlan plan;
        const auto look = [&](const Progress &progress) {
            SourceImport import(program.session, program.files);
            plan = import.plan(m_session.projectName(), book, picked, progress);
        };
        runWithProgress(program, m_window, tr("Looking at the source files..."), look);
        auto *list = new AddSourceFilesDialog(program.files, plan, m_window);
        list->setAttribute(Qt::WA_DeleteOnClose);
        connect(list, &QDialog::accepted, this, [this, list] { run(list->plan()); });
        list->open();
    });
}

void AddSourceFiles::run(const ImportPlan &plan)
{
    handled(m_session.program(), [&] {
        Program &program = m_session.program();
        ImportResult result;
        const auto copy = [&](const Progress &progress) {
            result = SourceImport(program.session, program.files).run(plan, progress);
        };
        runWithProgress(program, m_window, tr("Adding source files..."), copy);
        m_session.forgetBook(plan.book);
        if (result.copied > 0 || !result.pages.isEmpty())
            Q_EMIT added();
        if (!result.notes.isEmpty())
            program.messages.show({result.notes.join(u'\n')});
    });
}
