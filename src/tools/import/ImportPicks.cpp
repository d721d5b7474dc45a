// What an import takes: the files and folders the author picked, what archives hold, or what has
// changed since it was added.

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "tools/Checksum.h"
#include "tools/NaturalOrder.h"
#include "tools/PageNames.h"
#include "tools/import/ImportPlanner.h"
#include "tools/import/ZipArchive.h"

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;
using Kind = ImportItem::Kind;

namespace {

QString key(const QString &path)
{
    return path.toCaseFolded();
}

QString backslashed(const QString &path)
{
    return QString(path).replace(u'/', u'\\');
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

/// The page of a file that becomes one, in the same folder.
QString madePage(const QString &relative)
{
    const QString name = lastComponent(relative);
    return parentFolder(relative) + pageFileName(name.first(name.lastIndexOf(u'.')));
}

/// The end of the archive's path in the path of a file inside; -1 when there is none.
qsizetype endOfArchive(const QString &path)
{
    const qsizetype at = path.indexOf(".zip\\"_L1, 0, Qt::CaseInsensitive);
    return at < 0 ? -1 : at + 4;
}

QString dateText(const QDateTime &date)
{
    return date.toUTC().toString(Qt::ISODate);
}

} // namespace

void ImportPlanner::noteSources(const QList<BookSource> &sources)
{
    for (const BookSource &source : sources) {
        if (source.kind == SourceKind::excluded)
            m_excluded.insert(key(source.path));
        else
            m_sources.insert(key(backslashed(source.page)), source);
    }
}

void ImportPlanner::take(const QString &path)
{
    const QString plain = withoutBackslash(path);
    const FileStatus status = m_files.status(plain);
    if (liesIn(plain, m_bookFolder) || liesIn(m_bookFolder, withBackslash(plain)))
        omit(plain, {}, u"It is the book's own folder, or holds it or lies in it."_s);
    else if (status.kind == FileKind::Folder)
        takeFolder(withBackslash(plain));
    else if (status.kind == FileKind::Missing)
        omit(plain, {}, u"It is not there."_s);
    else if (status.kind != FileKind::File)
        omit(plain, {}, u"It is a link or a device; only real files and folders are taken."_s);
    else
        takeFile(plain, status);
}

void ImportPlanner::takeFile(const QString &path, const FileStatus &status)
{
    const bool all = m_plan->command == ImportCommand::ImportFiles;
    if (all && importFormat(path) == ImportFormat::Archive) {
        if (const QString folder = unpacked(path, status); !folder.isEmpty())
            takeFolder(folder);
    } else if (isWanted(path)) {
        addPage(parentFolder(path), lastComponent(path), status);
    } else {
        omit(path, {},
             all ? u"It is no text, Markdown file, table, HTML page or archive (.txt, .md, "
                   ".markdown, .csv, .tsv, .htm, .html, .xhtml, .zip)."_s
                 : u"It is no HTML page (.htm, .html, .xhtml)."_s);
    }
}

bool ImportPlanner::isWanted(const QString &name) const
{
    return isPageName(name)
           || (m_plan->command == ImportCommand::ImportFiles && isConverted(importFormat(name)));
}

void ImportPlanner::takeFolder(const QString &folder)
{
    std::multimap<QString, TreeEntry> pages; // by their place in the order
    walkTree(m_files, withoutBackslash(folder), [&](const TreeEntry &entry) {
        if (m_progress.stop.stop_requested())
            m_progress.step(0, 0);
        if (entry.status.kind == FileKind::Link)
            omit(entry.path, {}, u"It is a link; links are not followed."_s);
        else if (entry.status.kind == FileKind::File && isWanted(entry.relative))
            pages.emplace(naturalPageKey(entry.relative), entry);
    });
    for (const auto &[key, page] : pages)
        addPage(folder, page.relative, page.status);
}

/// The folder, with backslash, that an archive was unpacked into; "" when it cannot be.
QString ImportPlanner::unpacked(const QString &archive, const FileStatus &status)
{
    if (const auto known = m_topOfArchive.constFind(archive); known != m_topOfArchive.constEnd())
        return *known;
    QString &top = m_topOfArchive[archive];
    const auto refuse = [&](const QvError &error) { omit(archive, {}, error.description()); };
    trap(refuse, [&] {
        if (!m_files.folderExists(m_scratch))
            m_files.makeFolder(m_scratch);
        const QString folder =
            withBackslash(m_scratch) + QString::number(m_topOfArchive.size()) + u'\\';
        for (const RefusedEntry &entry : unpackArchive(m_files, archive, folder, m_progress))
            omit(withBackslash(archive) + backslashed(entry.name), {}, entry.reason);
        m_archives.insert(folder, {archive, status.modified});
        top = folder;
    });
    return top;
}

/// A page whose source is no longer what it was made of.
void ImportPlanner::takeNewer(const BookSource &source)
{
    if (source.kind == SourceKind::excluded)
        return;
    const QString page = backslashed(source.page);
    const auto there = m_book.find(page);
    if (!there || there->status.kind != FileKind::File) {
        omit(source.path, page, u"The page that was made of it is no longer in the book."_s);
        return;
    }
    const auto path = whereIsNow(source);
    if (!path)
        return;
    const FileStatus status = m_files.status(*path);
    if (status.kind != FileKind::File) {
        omit(source.path, page, u"It is no longer there; the page stays as it is."_s);
        return;
    }
    const QByteArray sum = checksumText(m_files.readFile(*path));
    if (sum == source.sum.toLatin1())
        return;
    // Below the folder that was added then, the source lies where the page does in the book.
    const QString folder = parentFolder(page);
    const QString top = parentFolder(*path);
    const bool alike = key(top).endsWith(u'\\' + key(folder));
    const qsizetype topEnd = alike ? top.size() - folder.size() : top.size();
    if (ImportItem *item = addPage(path->first(topEnd), path->sliced(topEnd), status)) {
        item->target = page;
        item->sourceKind = source.kind;
    } else {
        omit(source.path, page, u"Another page was made of the same file."_s);
    }
}

/// Where the source can be read; nothing when it is in an archive that is still the same.
std::optional<QString> ImportPlanner::whereIsNow(const BookSource &source)
{
    const qsizetype end = endOfArchive(source.path);
    const QString archive = end < 0 ? QString() : source.path.first(end);
    if (archive.isEmpty() || !m_files.fileExists(archive))
        return source.path;
    const FileStatus status = m_files.status(archive);
    if (dateText(status.modified) == source.date)
        return std::nullopt;
    const QString folder = unpacked(archive, status);
    return folder.isEmpty() ? source.path : folder + source.path.sliced(end + 1);
}

/// The new item; null when the file was taken already.
ImportItem *ImportPlanner::addPage(const QString &top, const QString &relative,
                                   const FileStatus &status)
{
    const bool made = isConverted(importFormat(relative));
    if ((made ? m_madeOf : m_itemOfSource).contains(top + relative))
        return nullptr;
    std::shared_ptr<FolderIndex> &index = m_tops[top];
    if (!index)
        index = std::make_shared<FolderIndex>(m_files, top);
    return &m_plan->items[itemOf({index.get(), relative}, status, made)];
}

int ImportPlanner::itemOf(const Origin &origin, const FileStatus &status, bool made)
{
    const QString source = origin.top->root() + origin.relative;
    QHash<QString, int> &known = made ? m_madeOf : m_itemOfSource;
    if (const auto item = known.constFind(source); item != known.constEnd())
        return *item;

    const auto archive = m_archives.constFind(origin.top->root());
    const bool packed = archive != m_archives.constEnd();
    ImportItem item;
    item.kind = made ? Kind::Page : kindOf(origin.relative);
    item.format = importFormat(origin.relative);
    item.source = source;
    item.remembered = packed ? withBackslash(archive->path) + origin.relative : source;
    item.sourceKind =
        m_plan->command == ImportCommand::SourceFiles ? SourceKind::source : SourceKind::import;
    item.target = made ? madePage(origin.relative) : origin.relative;
    item.size = status.size;
    item.modified = packed ? archive->modified : status.modified;
    item.readOnly = status.readOnly;
    const int index = static_cast<int>(m_plan->items.size());
    m_plan->items.append(item);
    m_origins.append(origin);
    known.insert(source, index);
    return index;
}

/// What the author left out the last time comes unchecked.
void ImportPlanner::uncheckExcluded()
{
    for (ImportItem &item : m_plan->items)
        item.included = !m_excluded.contains(key(item.remembered));
}
