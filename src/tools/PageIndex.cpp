#include "tools/PageIndex.h"

#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "tools/FolderIndex.h"
#include "tools/OrderedWork.h"
#include "tools/PageIndexReader.h"

#include <QScopeGuard>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int readers = 2;
/// So many changed pages are taken in one by one; beyond it all uses are counted again.
constexpr qsizetype fewPages = 64;

bool isRead(const QString &path)
{
    return isPageName(path) || isStyleSheetName(path);
}

QString shownPlace(const QString &anchor)
{
    return u'"' + anchor + u'"';
}

/// Browsers scroll to the top for it, whatever the page holds.
bool isTop(const QString &anchor)
{
    return anchor.compare("top"_L1, Qt::CaseInsensitive) == 0;
}

} // namespace

/// What lies in the folders.
struct PageIndex::Found
{
    struct File
    {
        QString path;
        FileStatus status;
    };
    QList<File> sources; ///< pages and style sheets
    QHash<QString, QString> files;
    QSet<QString> folders;
};

PageIndex::Found PageIndex::look(FileSystem &files, const QString &projectFolder,
                                 const QStringList &folders)
{
    Found found;
    FolderIndex disk(files, projectFolder);
    for (const QString &folder : folders) {
        const auto entry = disk.find(withoutBackslash(QString(folder).replace(u'/', u'\\')));
        if (!entry || entry->status.kind != FileKind::Folder)
            continue;
        found.folders.insert(entry->relative.toCaseFolded());
        walkTree(files, projectFolder + entry->relative, [&](const TreeEntry &met) {
            const QString path = entry->relative + u'\\' + met.relative;
            const QString key = path.toCaseFolded();
            if (met.status.kind == FileKind::Folder)
                found.folders.insert(key);
            if (met.status.kind != FileKind::File || found.files.contains(key))
                return;
            found.files.insert(key, path);
            if (isRead(path))
                found.sources.append({path, met.status});
        });
    }
    return found;
}

void PageIndex::update(FileSystem &files, const QString &projectFolder, const QStringList &folders,
                       const QString &language, const Progress &progress)
{
    m_project = lastComponent(withoutBackslash(projectFolder));
    const Found found = look(files, projectFolder, folders);
    m_files = found.files;
    m_folders = found.folders;
    forgetMissing(found);
    readStale(files, projectFolder, found, language, progress);
    lookForOthers(files, projectFolder);
}

void PageIndex::forgetMissing(const Found &found)
{
    QList<IndexedPage> gone;
    for (auto entry = m_pages.cbegin(); entry != m_pages.cend(); ++entry) {
        if (!found.files.contains(entry.key()))
            gone.append(entry->page);
    }
    const bool many = gone.size() > fewPages;
    for (const IndexedPage &page : std::as_const(gone)) {
        if (!many)
            removeUses(page);
        m_pages.remove(page.path.toCaseFolded());
    }
    if (many)
        countUsesAgain();
}

void PageIndex::readStale(FileSystem &files, const QString &projectFolder, const Found &found,
                          const QString &language, const Progress &progress)
{
    QList<Found::File> stale;
    for (const Found::File &file : found.sources) {
        const auto known = m_pages.find(file.path.toCaseFolded());
        const FileStamp stamp{file.status.kind, file.status.size, file.status.modified};
        if (known == m_pages.end() || known->page.stamp != stamp || known->page.path != file.path)
            stale.append(file);
        else if (known->page.readOnly != file.status.readOnly)
            known->page.readOnly = file.status.readOnly;
    }
    const bool few = stale.size() <= fewPages;
    const auto count = qScopeGuard([&] {
        if (!few)
            countUsesAgain();
    });
    const int total = static_cast<int>(stale.size());
    std::vector<Entry> read(stale.size());
    LinkPlaces places(m_project);
    const auto readOne = [&](int number) {
        Entry &entry = read[static_cast<size_t>(number)];
        entry.page = readIndexedPage(files, projectFolder, stale.at(number).path, language, places);
        entry.anchors = {entry.page.anchors.cbegin(), entry.page.anchors.cend()};
    };
    const auto takeOne = [&](int number) {
        const FileStatus &status = stale.at(number).status;
        Entry entry = std::move(read[static_cast<size_t>(number)]);
        // Looked at before it was read: a change meanwhile is noticed next time.
        entry.page.stamp = {status.kind, status.size, status.modified};
        entry.page.readOnly = status.readOnly;
        replace(std::move(entry), few);
        progress.step(number, total, stale.at(number).path);
    };
    inOrder(total, readers, progress.stop, readOne, takeOne);
}

void PageIndex::replace(Entry entry, bool withUses)
{
    const QString key = entry.page.path.toCaseFolded();
    if (withUses) {
        if (const auto old = m_pages.constFind(key); old != m_pages.constEnd())
            removeUses(old->page);
        addUses(entry.page);
    }
    m_pages.insert(key, std::move(entry));
}

void PageIndex::addUses(const IndexedPage &page)
{
    for (qsizetype i = 0; i < page.links.size(); ++i)
        m_uses[page.links.at(i).target.toCaseFolded()].append({page.path, i});
}

void PageIndex::removeUses(const IndexedPage &page)
{
    for (const IndexedLink &link : page.links) {
        const auto uses = m_uses.find(link.target.toCaseFolded());
        if (uses == m_uses.end())
            continue;
        uses->removeIf([&](const PageUse &use) { return use.page == page.path; });
        if (uses->isEmpty())
            m_uses.erase(uses);
    }
}

// Links spell most targets alike, so that each spelling is folded once.
void PageIndex::countUsesAgain()
{
    QHash<QString, QList<PageUse>> bySpelling;
    for (const Entry &entry : std::as_const(m_pages)) {
        const IndexedPage &page = entry.page;
        for (qsizetype i = 0; i < page.links.size(); ++i)
            bySpelling[page.links.at(i).target].append({page.path, i});
    }
    m_uses.clear();
    for (auto uses = bySpelling.cbegin(); uses != bySpelling.cend(); ++uses)
        m_uses[uses.key().toCaseFolded()] += *uses;
}

/// Links may also mean files of the project that lie in no book.
void PageIndex::lookForOthers(FileSystem &files, const QString &projectFolder)
{
    FolderIndex disk(files, projectFolder);
    for (const QString &target : targets()) {
        const QString key = target.toCaseFolded();
        if (m_files.contains(key) || m_folders.contains(key))
            continue;
        const QString top = target.section(u'\\', 0, 0).toCaseFolded();
        const auto entry = m_folders.contains(top) ? std::nullopt : disk.find(target);
        if (entry && entry->status.kind == FileKind::File)
            m_files.insert(key, entry->relative);
        else if (entry && entry->status.kind == FileKind::Folder)
            m_folders.insert(key);
    }
    m_folders.insert(QString()); // the project's own
}

void PageIndex::outdate(const QStringList &paths)
{
    QSet<QString> keys;
    for (const QString &path : paths)
        keys.insert(path.toCaseFolded());
    for (auto entry = m_pages.begin(); entry != m_pages.end(); ++entry) {
        QString key = entry.key();
        while (!key.isEmpty() && !keys.contains(key))
            key = withoutBackslash(parentFolder(key));
        if (!key.isEmpty())
            entry->page.stamp = {};
    }
}

QStringList PageIndex::pages() const
{
    QStringList paths;
    for (const Entry &entry : m_pages) {
        if (!entry.page.isStyleSheet)
            paths.append(entry.page.path);
    }
    paths.sort(Qt::CaseInsensitive);
    return paths;
}

QStringList PageIndex::sources() const
{
    QStringList paths;
    for (const Entry &entry : m_pages)
        paths.append(entry.page.path);
    return paths;
}

QStringList PageIndex::unreadable() const
{
    QStringList paths;
    for (const Entry &entry : m_pages) {
        if (!entry.page.problem.isEmpty())
            paths.append(entry.page.path);
    }
    return paths;
}

const IndexedPage *PageIndex::page(const QString &path) const
{
    const auto found = m_pages.constFind(path.toCaseFolded());
    return found == m_pages.constEnd() ? nullptr : &found->page;
}

QList<PageUse> PageIndex::usesOf(const QString &path) const
{
    return m_uses.value(path.toCaseFolded());
}

QStringList PageIndex::targets() const
{
    QStringList all;
    for (const QList<PageUse> &uses : m_uses)
        all.append(page(uses.first().page)->links.at(uses.first().link).target);
    return all;
}

LinkState PageIndex::stateOf(const IndexedLink &link) const
{
    if (link.target.isNull() && targetOf(link.written).place == PageTarget::Place::Elsewhere)
        return LinkState::Elsewhere;
    const QString key = link.target.toCaseFolded();
    const auto file = m_files.constFind(key);
    if (file == m_files.constEnd()) {
        if (link.target.isNull())
            return LinkState::LeavesProject;
        return m_folders.contains(key) ? LinkState::IsFolder : LinkState::FileMissing;
    }
    const auto page = m_pages.constFind(key);
    if (!link.anchor.isEmpty() && page != m_pages.constEnd() && page->page.problem.isEmpty()
        && !page->anchors.contains(link.anchor) && !isTop(link.anchor))
        return LinkState::PlaceMissing;
    return *file == link.target ? LinkState::Good : LinkState::OtherLetterCase;
}

QString PageIndex::problemOf(const IndexedLink &link) const
{
    switch (stateOf(link)) {
    case LinkState::Good:
    case LinkState::Elsewhere:
        return {};
    case LinkState::FileMissing:
        return isPageName(link.target) ? u"The page is missing."_s : u"The file is missing."_s;
    case LinkState::IsFolder:
        return u"It leads to a folder."_s;
    case LinkState::PlaceMissing:
        return u"The page has no place %1."_s.arg(shownPlace(link.anchor));
    case LinkState::OtherLetterCase:
        return u"The file is called %1: letter case differs."_s.arg(
            m_files.value(link.target.toCaseFolded()));
    case LinkState::LeavesProject:
        return u"It leads out of the project."_s;
    }
    return {};
}

int PageIndex::problemsIn(const QString &path) const
{
    const IndexedPage *of = page(path);
    if (of == nullptr)
        return 0;
    const auto isBad = [this](const IndexedLink &link) {
        const LinkState state = stateOf(link);
        return state != LinkState::Good && state != LinkState::Elsewhere;
    };
    return static_cast<int>(std::count_if(of->links.cbegin(), of->links.cend(), isBad)
                            + std::count_if(of->outside.cbegin(), of->outside.cend(), isBad));
}
