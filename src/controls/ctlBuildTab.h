#pragma once

#include <QWidget>

class QLabel;
class StatusLight;
struct Program;

/// The build control: the project's four status lights.
class ctlBuildTab final : public QWidget
{
    Q_OBJECT

public:
    explicit ctlBuildTab(Program &program, QWidget *parent = nullptr);

    void setProjectName(const QString &name);
    void setProjectLanguage(const QString &code);
    /// Reads the status file again and shows the lights. `source` says who asks ("MainUI").
    void RefreshStatus(const QString &source);

Q_SIGNALS:
    void evtNext();
    void evtBack();
    void evtProcessComplete(bool success);
    void evtZippingComplete();

private:
    StatusLight *addLight(const QString &objectName, const QString &subject);
    void showLights();
    void showProject();

    Program &m_program;
    QString m_project;
    QString m_language;
    QLabel *lblProject;
    StatusLight *m_docToDoc;
    StatusLight *m_contextSettings;
    StatusLight *m_quickNav;
    StatusLight *m_searchIndex;
    QLabel *lblProblem;
};
