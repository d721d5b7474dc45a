#include "controls/import/AddSourceFiles.h"

#include "controls/import/ImportList.h"
#include "controls/parts/Handler.h"
#include "tools/import/SourceImport.h"

#include <QWidget>

AddSourceFiles::AddSourceFiles(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_list(new ImportList(session, window))
{
    connect(m_list, &ImportList::added, this, &AddSourceFiles::added);
}

void AddSourceFiles::begin(const QStringList &picked, const std::function<void()> &whenNone)
{
    if (!m_session.currentBook())
        return;
    handled(m_session.program(), [&] {
        Program &program = m_session.program();
        ImportPlan plan;
        m_session.runLong(tr("Looking at the source files..."), [&](const Progress &progress) {
            plan = SourceImport(program.session, program.files)
                       .plan(m_session.projectName(), *m_session.currentBook(), picked, progress);
        });
        if (plan.items.isEmpty() && whenNone)
            whenNone();
        else
            m_list->decide(plan);
    });
}
