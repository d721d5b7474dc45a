#include "tools/ImportPlanner.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "tools/NaturalOrder.h"

#include <QCryptographicHash>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;
using Kind = ImportItem::Kind;

namespace {

QString key(const QString &path)
{
    return path.toCaseFolded();
}

bool liesIn(const QString &path, const QString &folder)
{
    return key(withBackslash(path)).startsWith(key(folder));
}

Kind kindOf(const QString &name)
{
    const QString suffix = name.sliced(name.lastIndexOf(u'.') + 1).toLower();
    static constexpr QLatin1StringView pictures[]{"png"_L1, "gif"_L1,  "jpg"_L1, "jpeg"_L1,
                                                  "bmp"_L1, "webp"_L1, "svg"_L1, "ico"_L1};
    if (isPageName(name))
        return Kind::Page;
    if (suffix == "css"_L1)
        return Kind::Style;
    if (suffix == "js"_L1)
        return Kind::Script;
    return std::find(std::begin(pictures), std::end(pictures), suffix) != std::end(pictures)
               ? Kind::Picture
               : Kind::File;
}

QString titleOf(const HtmlFacts &facts, const QString &name)
{
    if (!facts.title.isEmpty())
        return facts.title;
    return facts.firstHeading.isEmpty() ? name : facts.firstHeading;
}

} // namespace

ImportPlanner::ImportPlanner(FileSystem &files, QString bookFolder, QString language,
                             const Progress &progress)
    : m_files(files)
    , m_bookFolder(std::move(bookFolder))
    , m_language(std::move(language))
    , m_progress(progress)
    , m_book(files, m_bookFolder)
{
}

void ImportPlanner::work(ImportPlan &plan, const QStringList &picked)
{
    m_plan = &plan;
    for (const QString &path : picked)
        take(path);
    readPages();
    findConflicts();
}

// ---- what was picked

void ImportPlanner::take(const QString &path)
{
    const QString plain = withoutBackslash(path);
    const FileStatus status = m_files.status(plain);
    if (liesIn(plain, m_bookFolder) || liesIn(m_bookFolder, withBackslash(plain)))
        omit(plain, {}, u"It is the book's own folder, or holds it or lies in it."_s);
    else if (status.kind == FileKind::Folder)
        takeFolder(plain);
    else if (status.kind == FileKind::Missing)
        omit(plain, {}, u"It is not there."_s);
    else if (status.kind != FileKind::File)
        omit(plain, {}, u"It is a link or a device; only real files and folders are taken."_s);
    else if (!isPageName(plain))
        omit(plain, {}, u"It is no HTML page (.htm, .html, .xhtml)."_s);
    else
        addPage(parentFolder(plain), lastComponent(plain), status);
}

void ImportPlanner::takeFolder(const QString &folder)
{
    std::multimap<QString, TreeEntry> pages; // by their place in the order
    walkTree(m_files, folder, [&](const TreeEntry &entry) {
        if (m_progress.stop.stop_requested())
            m_progress.step(0, 0);
        if (entry.status.kind == FileKind::Link)
            omit(entry.path, {}, u"It is a link; links are not followed."_s);
        else if (entry.status.kind == FileKind::File && isPageName(entry.relative))
            pages.emplace(naturalPageKey(entry.relative), entry);
    });
    for (const auto &[key, page] : pages)
        addPage(withBackslash(folder), page.relative, page.status);
}

void ImportPlanner::addPage(const QString &top, const QString &relative, const FileStatus &status)
{
    if (!m_itemOfSource.contains(top + relative))
        itemOf({&topFolder(top), relative}, status);
}

FolderIndex &ImportPlanner::topFolder(const QString &path)
{
    std::shared_ptr<FolderIndex> &top = m_tops[path];
    if (!top)
        top = std::make_shared<FolderIndex>(m_files, path);
    return *top;
}

int ImportPlanner::itemOf(const Origin &origin, const FileStatus &status)
{
    const QString source = origin.top->root() + origin.relative;
    const auto known = m_itemOfSource.constFind(source);
    if (known != m_itemOfSource.constEnd())
        return *known;

    ImportItem item;
    item.kind = kindOf(origin.relative);
    item.source = source;
    item.target = origin.relative;
    item.size = status.size;
    item.modified = status.modified;
    item.readOnly = status.readOnly;
    const int index = static_cast<int>(m_plan->items.size());
    m_plan->items.append(item);
    m_origins.append(origin);
    m_itemOfSource.insert(source, index);
    return index;
}

void ImportPlanner::omit(const QString &reference, const QString &page, const QString &reason)
{
    if (m_omitted.contains(reference))
        return;
    m_omitted.insert(reference);
    m_plan->omissions.append({reference, page, reason});
}

// ---- what the pages say

/// Style sheets join the list while it is gone through.
void ImportPlanner::readPages()
{
    for (int i = 0; i < m_plan->items.size(); ++i) {
        m_progress.step(i, static_cast<int>(m_plan->items.size()), m_plan->items[i].target);
        if (m_plan->items[i].isPage())
            readPage(i);
        else if (m_plan->items[i].kind == Kind::Style)
            readStyle(i);
    }
}

void ImportPlanner::readPage(int index)
{
    const QByteArray bytes = m_files.readFile(m_plan->items[index].source);
    const PageText page = decodePage(bytes, m_language);
    const HtmlFacts facts = scanHtml(page.text);
    ImportItem &item = m_plan->items[index];
    item.title = titleOf(facts, lastComponent(item.target));
    item.encoding = page.encoding;
    item.damaged = page.damaged;
    item.sum = QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
    if (facts.hasBase)
        omit(item.source, item.target,
             u"Its <base> moves its links; the files it uses are not looked for."_s);
    else
        follow(index, page.text, facts.references);
}

void ImportPlanner::readStyle(int index)
{
    const PageText sheet = decodePage(m_files.readFile(m_plan->items[index].source), m_language);
    follow(index, sheet.text, scanCss(sheet.text));
}

void ImportPlanner::follow(int index, QStringView text, const QList<PageReference> &references)
{
    m_seenReferences.clear();
    m_seenUses.clear();
    for (const PageReference &reference : references)
        followOne(index, reference.kind, text.sliced(reference.start, reference.length));
}

void ImportPlanner::followOne(int index, PageReference::Kind kind, QStringView reference)
{
    const bool link = kind == PageReference::Kind::Link;
    const PageTarget target = targetOf(reference);
    const QString page = m_plan->items[index].target;
    if (target.place == PageTarget::Place::SamePage)
        return;
    if (target.place == PageTarget::Place::Relative) {
        if (m_seenReferences.contains(target.path))
            return;
        m_seenReferences.insert(target.path);
    }
    if (target.place == PageTarget::Place::Elsewhere) {
        if (!link && !reference.trimmed().startsWith(u"data:", Qt::CaseInsensitive))
            omit(reference.toString(), page, u"Outside, not copied: it lies on another machine."_s);
        return;
    }

    const Origin origin = m_origins[index];
    const auto path = target.place == PageTarget::Place::Relative
                          ? joined(parentFolder(origin.relative), target.path)
                          : std::nullopt;
    if (!path) {
        omit(reference.toString(), page,
             u"Outside, not copied: it lies above the folder chosen."_s);
        return;
    }
    const auto entry = origin.top->find(*path);
    if (entry && entry->status.kind == FileKind::File)
        use(index, *entry);
    else if (!entry || entry->status.kind != FileKind::Folder)
        omit(origin.top->root() + *path, page, u"It is missing, or behind a link."_s);
}

void ImportPlanner::use(int index, const FolderIndex::Entry &entry)
{
    const Origin origin{m_origins[index].top, entry.relative};
    const QString source = origin.top->root() + entry.relative;
    if (isPageName(entry.relative) && !m_itemOfSource.contains(source)) {
        omit(source, m_plan->items[index].target, u"This page was not chosen."_s);
        return;
    }
    const int used = itemOf(origin, entry.status);
    if (m_seenUses.contains(used))
        return;
    m_seenUses.insert(used);
    m_plan->items[index].uses.append(used);
}
