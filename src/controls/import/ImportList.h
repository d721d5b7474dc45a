#pragma once

#include "controls/session/ProjectSession.h"
#include "tools/import/ImportPlan.h"

class QWidget;

/// What all commands that add files to a book end with: the author sees the list, decides, and what
/// was decided is done as one command that can be undone.
class ImportList final : public QObject
{
    Q_OBJECT

public:
    ImportList(ProjectSession &session, QWidget *window);

    /// Opens the list; it stays open for the author.
    void decide(const ImportPlan &plan);

Q_SIGNALS:
    void added();  ///< the book has new files or newer ones
    void closed(); ///< the plan is needed no more, whatever became of it

private:
    void run(const ImportPlan &plan);

    ProjectSession &m_session;
    QWidget *m_window;
};
