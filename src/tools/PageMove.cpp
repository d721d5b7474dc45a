#include "tools/PageMove.h"

#include "platform/Paths.h"
#include "tools/PageIndexReader.h"
#include "tools/RelativePath.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Works out the changes of one plan.
class Planner final
{
public:
    Planner(const PageIndex &index, const QList<PathMove> &moves)
        : m_index(index)
        , m_paths(moves)
    {
        m_plan.moves = moves;
    }

    PageMove plan()
    {
        for (const PathMove &move : std::as_const(m_plan.moves)) {
            if (move.isFolder) {
                takeAll();
                break;
            }
            take(move.from);
            for (const PageUse &use : m_index.usesOf(move.from))
                take(use.page);
        }
        for (const QString &path : m_index.unreadable())
            m_plan.changes.append(unreadable(*m_index.page(path)));
        std::stable_sort(m_plan.changes.begin(), m_plan.changes.end(),
                         [](const LinkChange &a, const LinkChange &b) {
                             const int order = a.page.compare(b.page, Qt::CaseInsensitive);
                             return order != 0 ? order < 0 : a.start < b.start;
                         });
        return m_plan;
    }

private:
    void takeAll()
    {
        for (const QString &path : m_index.sources())
            take(path);
    }

    void take(const QString &path)
    {
        const IndexedPage *page = m_index.page(path);
        if (page == nullptr || m_taken.contains(page->path))
            return;
        m_taken.insert(page->path);
        const QString folder = parentFolder(m_paths.newPath(page->path));
        if (page->base)
            compare(*page, *page->base, {parentFolder(page->path), {}}, {folder, {}});
        const QString linkFolder = page->base ? newFolder(page->linkFolder) : folder;
        for (const IndexedLink &link : page->links) {
            if (targetOf(link.written).place == PageTarget::Place::Relative)
                compare(*page, link, {page->linkFolder, {}}, {linkFolder, {}});
        }
    }

    [[nodiscard]] QString newFolder(const QString &folder) const
    {
        return folder.isEmpty() ? folder : withBackslash(m_paths.newPath(withoutBackslash(folder)));
    }

    void compare(const IndexedPage &page, const IndexedLink &link, ReferenceEnds before,
                 ReferenceEnds now)
    {
        before.target = link.target;
        now.target = m_paths.newPath(link.target);
        if (before.folder == now.folder && before.target == now.target)
            return;
        if (targetInProject(m_index.projectName(), now.folder, targetOf(link.written).path)
            == now.target)
            return; // as it is written it leads there
        const QString after = redirected(link.written, before, now);
        if (after != link.written)
            m_plan.changes.append({.page = page.path,
                                   .line = link.line,
                                   .start = link.start,
                                   .length = link.length,
                                   .before = link.written,
                                   .after = after,
                                   .problem = problemOf(page),
                                   .isLocked = page.readOnly});
    }

    // Where single bytes are no characters, a page with bytes that are no text has no safe places.
    static QString problemOf(const IndexedPage &page)
    {
        const QByteArray encoding = page.encoding.name.toUpper();
        const bool wide = encoding.startsWith("UTF-16") || encoding.startsWith("ISO-2022");
        return page.damaged && wide ? u"Some bytes of the page are no text in %1."_s.arg(
                   QString::fromLatin1(page.encoding.name))
                                    : QString();
    }

    static LinkChange unreadable(const IndexedPage &page)
    {
        return {.page = page.path,
                .before = {},
                .after = {},
                .problem = u"Its links are not known: "_s + page.problem};
    }

    const PageIndex &m_index;
    MovedPaths m_paths;
    PageMove m_plan;
    QSet<QString> m_taken;
};

} // namespace

MovedPaths::MovedPaths(const QList<PathMove> &moves)
{
    for (const PathMove &move : moves) {
        m_moves.insert(move.from.toCaseFolded(), move.to);
        m_hasFolders |= move.isFolder;
    }
}

QString MovedPaths::newPath(const QString &path) const
{
    QString key = path.toCaseFolded();
    qsizetype size = path.size();
    while (size > 0) {
        // Folding can change the length of a text, so the beginnings are folded one by one.
        if (const auto move = m_moves.constFind(key); move != m_moves.constEnd())
            return *move + path.sliced(size);
        if (!m_hasFolders)
            break;
        size = path.lastIndexOf(u'\\', size - 1);
        key = size > 0 ? path.first(size).toCaseFolded() : QString();
    }
    return path;
}

QStringList PageMove::lockedPages() const
{
    QStringList pages;
    for (const LinkChange &change : changes) {
        const bool known = !pages.isEmpty() && pages.last() == change.page;
        if (change.isLocked && change.problem.isEmpty() && !known)
            pages.append(change.page);
    }
    return pages;
}

int PageMove::changeCount() const
{
    return static_cast<int>(
        std::count_if(changes.cbegin(), changes.cend(),
                      [](const LinkChange &change) { return change.problem.isEmpty(); }));
}

PageMove PageMove::withOwnLinksOnly() const
{
    PageMove own{moves, changes};
    const MovedPaths paths(moves);
    own.changes.removeIf(
        [&](const LinkChange &change) { return paths.newPath(change.page) == change.page; });
    return own;
}

PageMove planPageMove(const PageIndex &index, const QList<PathMove> &moves)
{
    return Planner(index, moves).plan();
}
