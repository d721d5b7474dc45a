#pragma once

#include "controls/session/ProjectSession.h"

#include <functional>

class ImportList;
class QWidget;

/// The command *Add source files*: looks at what the author picked, shows the list, copies.
class AddSourceFiles final : public QObject
{
    Q_OBJECT

public:
    AddSourceFiles(ProjectSession &session, QWidget *window);

    /// Begins with files or folders (product paths) for the current book. The list stays open for
    /// the author; `added` follows when something was.
    /// Where there is no page in them at all `whenNone` runs instead.
    void begin(const QStringList &picked, const std::function<void()> &whenNone = {});

Q_SIGNALS:
    void added();

private:
    ProjectSession &m_session;
    ImportList *m_list;
};
