#pragma once

#include "controls/session/ProjectSession.h"

#include <QObject>

/// The pages that the author visited, for going back and forward among them. Pages that are gone
/// are passed over.
class PageHistory final : public QObject
{
    Q_OBJECT

public:
    explicit PageHistory(ProjectSession &session, QObject *parent = nullptr);

    void back() { go(-1); }
    void forward() { go(1); }

private:
    struct Visit
    {
        TocBook book;
        QString page;
    };

    void note();
    void beginAnew();
    void go(int by);

    ProjectSession &m_session;
    QString m_project; ///< that they are of
    QList<Visit> m_visits;
    qsizetype m_at = -1; ///< the one that is shown
    bool m_isGoing = false;
};
