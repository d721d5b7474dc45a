#include "controls/tree/TreeBadges.h"

#include "controls/session/ProjectPages.h"
#include "controls/tree/TreeFindings.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using Kind = TreeBadge::Kind;

QString translated(const char *text, int count)
{
    return QCoreApplication::translate("TreeBadge", text, nullptr, count);
}

// Only pages are looked at in the background; of other files nothing is known.
bool isPage(const QString &path)
{
    return path.endsWith(".htm"_L1, Qt::CaseInsensitive)
           || path.endsWith(".html"_L1, Qt::CaseInsensitive);
}

bool comesBefore(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) < 0;
}
} // namespace

QLatin1StringView TreeBadge::icon() const
{
    switch (kind) {
    case Kind::Unsaved:
        return "unsaved"_L1;
    case Kind::ChangedOnDisk:
        return "page-changed"_L1;
    case Kind::Missing:
        return "page-missing"_L1;
    case Kind::Unreadable:
        return "error"_L1;
    case Kind::BrokenLinks:
        return "link-broken"_L1;
    case Kind::Findings:
        return "warning"_L1;
    case Kind::Locked:
        break;
    }
    return "lock"_L1;
}

QString TreeBadge::words() const
{
    const bool one = count == 1;
    switch (kind) {
    case Kind::Unsaved:
        return one ? translated("not saved yet", 1) : translated("%n pages not saved yet", count);
    case Kind::ChangedOnDisk:
        return one ? translated("changed on disk", 1)
                   : translated("%n pages changed on disk", count);
    case Kind::Missing:
        return one ? translated("file missing", 1) : translated("%n files missing", count);
    case Kind::Unreadable:
        return one ? translated("cannot be read", 1) : translated("%n pages cannot be read", count);
    case Kind::BrokenLinks:
        return one ? translated("1 broken link", 1) : translated("%n broken links", count);
    case Kind::Findings:
        return one ? translated("1 finding of the quality checks", 1)
                   : translated("%n findings of the quality checks", count);
    case Kind::Locked:
        break;
    }
    return one ? translated("locked", 1) : translated("%n pages locked", count);
}

QString wordsOf(const TreeBadgeList &badges)
{
    QStringList words;
    for (const TreeBadge &badge : badges)
        words.append(badge.words());
    return words.join(", "_L1);
}

TreeBadges::TreeBadges(ProjectSession &session, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_findings(new TreeFindings(session, this))
{
    connect(&session.pages(), &ProjectPages::updated, this, &TreeBadges::takeUpdate);
    connect(&session, &ProjectSession::wasReset, this, &TreeBadges::takeUpdate);
    connect(m_findings, &TreeFindings::changed, this, &TreeBadges::takeFindings);
    connect(&session, &ProjectSession::pageStateChanged, this,
            [this](const QString &path) { forget({path.mid(m_session.folder().size())}); });
    connect(&session, &ProjectSession::filesChanged, this, [this](const QStringList &paths) {
        for (const QString &path : paths)
            m_written.insert(path.toCaseFolded());
        forget(paths);
    });
}

void TreeBadges::takeUpdate()
{
    m_written.clear();
    m_isSorted = false;
    takeFindings();
}

void TreeBadges::takeFindings()
{
    m_pages.clear();
    forget({});
}

// Only these pages look different; counting the links of all others again would be felt while
// typing.
void TreeBadges::forget(const QStringList &paths)
{
    for (const QString &path : paths)
        m_pages.remove(path.toCaseFolded());
    m_folders.clear();
    Q_EMIT changed();
}

const TreeBadgeList &TreeBadges::ofPage(const QString &path)
{
    const QString key = path.toCaseFolded();
    auto known = m_pages.constFind(key);
    if (known == m_pages.constEnd())
        known = m_pages.insert(key, look(path));
    return *known;
}

const TreeBadgeList &TreeBadges::ofFolder(const QString &folder)
{
    auto known = m_folders.constFind(folder);
    if (known == m_folders.constEnd())
        known = m_folders.insert(folder, sumOf(folder));
    return *known;
}

bool TreeBadges::isLocked(const QString &path)
{
    const TreeBadgeList &badges = ofPage(path);
    return std::any_of(badges.cbegin(), badges.cend(),
                       [](const TreeBadge &badge) { return badge.kind == Kind::Locked; });
}

TreeBadgeList TreeBadges::look(const QString &path) const
{
    TreeBadgeList badges;
    const PageState state = m_session.pageState(m_session.folder() + path);
    if (state.unsaved)
        badges.append({Kind::Unsaved});
    if (state.changedOnDisk)
        badges.append({Kind::ChangedOnDisk});
    if (!m_session.pages().isReady() || !isPage(path))
        return badges;
    const PageIndex &index = m_session.pages().latest();
    const IndexedPage *page = index.page(path);
    if (page == nullptr) {
        // A file of this moment has not been looked at yet.
        if (!m_written.contains(path.toCaseFolded()))
            badges.append({Kind::Missing});
        return badges;
    }
    if (!page->problem.isEmpty())
        badges.append({Kind::Unreadable});
    if (const int broken = index.problemsIn(path); broken > 0)
        badges.append({Kind::BrokenLinks, broken});
    if (const int findings = m_findings->of(path); findings > 0)
        badges.append({Kind::Findings, findings});
    if (page->readOnly)
        badges.append({Kind::Locked});
    return badges;
}

// The lock is left out: in a copied project every other page has one.
TreeBadgeList TreeBadges::sumOf(const QString &folder)
{
    if (!m_isSorted) {
        m_sorted = m_session.pages().latest().pages();
        std::sort(m_sorted.begin(), m_sorted.end(), comesBefore);
        m_isSorted = true;
    }
    QMap<Kind, int> counts;
    const QString start = folder + u'\\';
    auto path = std::lower_bound(m_sorted.cbegin(), m_sorted.cend(), start, comesBefore);
    for (; path != m_sorted.cend() && path->startsWith(start, Qt::CaseInsensitive); ++path) {
        for (const TreeBadge &badge : ofPage(*path))
            counts[badge.kind] += badge.count;
    }
    counts.remove(Kind::Locked);
    TreeBadgeList badges;
    for (const auto &[kind, count] : counts.asKeyValueRange())
        badges.append({kind, count});
    return badges;
}
