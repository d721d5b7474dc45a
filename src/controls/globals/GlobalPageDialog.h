#pragma once

#include "projectfiles/GlobalBook.h"

#include <QDialog>

#include <functional>

class CheckedField;
class ProjectSession;
class QComboBox;
class QPushButton;

/// Title, type and, for a new one, file name of a global page.
class GlobalPageDialog final : public QDialog
{
    Q_OBJECT

public:
    struct Task
    {
        QString title, button;
        GlobalPage page; ///< one without an id is new; its file is what the name begins from
    };
    /// `run` does it; when it says false, the dialog stays.
    using Run = std::function<bool(const GlobalPage &page)>;
    GlobalPageDialog(ProjectSession &session, Task task, Run run, QWidget *parent = nullptr);

private:
    void layOut();
    void fillTypes();
    void proposeTitle();
    void proposeFile();
    void judge();
    void accept() override;
    [[nodiscard]] GlobalPage page() const;
    [[nodiscard]] bool isNew() const { return m_task.page.id.isEmpty(); }

    ProjectSession &m_session;
    Task m_task;
    Run m_run;
    QComboBox *cboType;
    CheckedField *txtTitle;
    CheckedField *txtFile;
    QPushButton *cmdOk;
};
