#include "workspace/RecentPlaces.h"

#include <QSettings>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostProjects = 9;
constexpr qsizetype mostPages = 15;
constexpr auto projectsKey = "/Projects"_L1;

/// A text as one piece of a settings key, which a slash would divide.
QString asKey(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString asText(const RecentPage &page)
{
    return u"%1\n%2\n%3"_s.arg(page.book, page.page, QString(page.title).replace(u'\n', u' '));
}

RecentPage asPage(const QString &text)
{
    return {text.section(u'\n', 0, 0), text.section(u'\n', 1, 1), text.section(u'\n', 2)};
}

} // namespace

RecentPlaces::RecentPlaces(const QString &serverPath)
    : m_group(u"Recent/"_s + asKey(serverPath))
{
}

QStringList RecentPlaces::projects() const
{
    return QSettings().value(m_group + projectsKey).toStringList();
}

void RecentPlaces::opened(const QString &project)
{
    QStringList names = projects();
    names.removeAll(project);
    names.prepend(project);
    QSettings settings;
    for (const QString &old : names.mid(mostProjects))
        settings.remove(pagesKey(old));
    settings.setValue(m_group + projectsKey, names.first(qMin(names.size(), mostProjects)));
}

void RecentPlaces::forget(const QString &project)
{
    QStringList names = projects();
    names.removeAll(project);
    QSettings settings;
    settings.setValue(m_group + projectsKey, names);
    settings.remove(pagesKey(project));
}

void RecentPlaces::renamed(const QString &before, const QString &now)
{
    if (before == now)
        return;
    QSettings().setValue(pagesKey(now), QSettings().value(pagesKey(before)));
    forget(before);
    opened(now);
}

QList<RecentPage> RecentPlaces::pages(const QString &project) const
{
    QList<RecentPage> pages;
    for (const QString &text : QSettings().value(pagesKey(project)).toStringList())
        pages.append(asPage(text));
    return pages;
}

void RecentPlaces::shown(const QString &project, const RecentPage &page)
{
    QStringList texts{asText(page)};
    for (const RecentPage &other : pages(project)) {
        if (other.book != page.book || other.page != page.page)
            texts.append(asText(other));
    }
    QSettings().setValue(pagesKey(project), texts.mid(0, mostPages));
}

QString RecentPlaces::pagesKey(const QString &project) const
{
    return m_group + u"/Pages/"_s + asKey(project);
}
