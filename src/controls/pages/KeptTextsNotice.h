#pragma once

#include <QObject>

class ProjectSession;
class QWidget;

/// Says once, when a project was opened, that unsaved text of some of its pages was kept.
class KeptTextsNotice final : public QObject
{
    Q_OBJECT

public:
    KeptTextsNotice(ProjectSession &session, QWidget *window);

Q_SIGNALS:
    /// The author wants to see such a page: path relative to the project folder.
    void pageRequested(const QString &page);

private:
    void lookOnce();
    void tell();

    ProjectSession &m_session;
    QWidget *m_window;
    QString m_project; ///< that was looked at
};
