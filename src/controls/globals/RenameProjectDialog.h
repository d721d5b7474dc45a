#pragma once

#include "tools/rename/RenameSurvey.h"

#include <QDialog>

class CheckedField;
class ProjectSession;
class QCheckBox;
class QPushButton;
class QTreeWidget;

/// Asks for the new name of the open project, shows all that will change, and does it.
class RenameProjectDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Looks at the project's files first. Raises as `surveyRename`.
    explicit RenameProjectDialog(ProjectSession &session, QWidget *parent = nullptr);

private:
    void layOut();
    void judge();
    void listChanges();
    void addLine(const QString &text, const QStringList &details = {});
    void accept() override;

    ProjectSession &m_session;
    RenameSurvey m_survey;
    QString m_prefix;
    CheckedField *txtName;
    QTreeWidget *tvwChanges;
    QCheckBox *chkOthers;
    QPushButton *cmdRename;
};
