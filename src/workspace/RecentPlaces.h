#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A page the author looked at.
struct RecentPage
{
    QString book; ///< acronym
    QString page; ///< id in the book
    QString title;
};

/// The projects and pages that this author worked on last, newest first, in the user's settings.
/// Each server folder has its own.
class RecentPlaces final
{
public:
    explicit RecentPlaces(const QString &serverPath);

    [[nodiscard]] QStringList projects() const; ///< at most nine
    void opened(const QString &project);
    /// It is no longer there.
    void forget(const QString &project);
    /// It bears another name now, and keeps its pages.
    void renamed(const QString &before, const QString &now);

    [[nodiscard]] QList<RecentPage> pages(const QString &project) const; ///< at most fifteen
    void shown(const QString &project, const RecentPage &page);

private:
    [[nodiscard]] QString pagesKey(const QString &project) const;

    QString m_group; ///< of this server folder
};
