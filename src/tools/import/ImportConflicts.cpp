// What stands in the way of the files of an import: unsafe names, names taken in the book.

#include "platform/Paths.h"
#include "tools/Checksum.h"
#include "tools/import/ImportPlanner.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Longer paths cannot be opened by most programs on Windows.
constexpr qsizetype longestPath = 259;

QString key(const QString &path)
{
    return path.toCaseFolded();
}

QString unsafePiece(const QString &relative)
{
    const QStringList pieces = relative.split(u'\\');
    const auto unsafe = std::find_if_not(pieces.begin(), pieces.end(), isSafeName);
    return unsafe == pieces.end() ? QString() : *unsafe;
}

QString sizeAndDate(qint64 size, const QDateTime &date)
{
    const QLocale locale;
    return u"%1 of %2"_s.arg(locale.formattedDataSize(size, 1, QLocale::DataSizeTraditionalFormat),
                             locale.toString(date.toLocalTime(), QLocale::ShortFormat));
}

void propose(ImportItem &item, const QList<ImportAction> &actions)
{
    item.actions = actions;
    item.action = actions.first();
}

} // namespace

void ImportPlanner::findConflicts()
{
    for (const ImportItem &item : std::as_const(m_plan->items))
        m_wanted.insert(key(item.target));
    for (ImportItem &item : m_plan->items)
        findConflict(item);
}

void ImportPlanner::findConflict(ImportItem &item)
{
    propose(item, {ImportAction::Copy});
    item.refusal = refusalOf(item);
    if (!item.refusal.isEmpty())
        return;
    if (m_given.contains(key(item.target)))
        offerImportConflict(item);
    else if (const auto existing = m_book.find(item.target))
        offerBookConflict(item, *existing);
    if (!m_sourceOfTarget.contains(key(item.target)))
        m_sourceOfTarget.insert(key(item.target), item.source);
    m_given.insert(key(item.target));
}

QString ImportPlanner::refusalOf(const ImportItem &item)
{
    if (const QString piece = unsafePiece(item.target); !piece.isEmpty())
        return u"The name \"%1\" cannot be used on every system."_s.arg(piece);
    if (isTooLarge(item))
        return u"It is too large to become one page."_s;
    if (item.isPage() && item.target.contains(u'#'))
        return u"A page's name cannot hold \"#\"."_s;
    if (m_bookFolder.size() + item.target.size() > longestPath)
        return u"Its path in the book would be longer than %1 characters."_s.arg(longestPath);
    for (qsizetype slash = item.target.indexOf(u'\\'); slash >= 0;
         slash = item.target.indexOf(u'\\', slash + 1)) {
        const auto folder = m_book.find(item.target.first(slash));
        if (folder && folder->status.kind != FileKind::Folder)
            return u"\"%1\" in the book is no folder."_s.arg(folder->relative);
    }
    const auto existing = m_book.find(item.target);
    if (existing && existing->status.kind != FileKind::File)
        return u"\"%1\" in the book is a folder or a link."_s.arg(existing->relative);
    if (existing && existing->relative.endsWith(".xml"_L1, Qt::CaseInsensitive))
        return u"An XML file of this name is in the book; those are not replaced."_s;
    return {};
}

void ImportPlanner::offerImportConflict(ImportItem &item)
{
    const QString other = m_sourceOfTarget.value(key(item.target));
    item.conflict = u"%1 has the same name"_s.arg(other);
    item.renamed = freeName(item.target);
    if (sameBytes(item, other, m_files.status(other).size))
        propose(item, {ImportAction::Skip, ImportAction::Rename});
    else
        propose(item, {ImportAction::Rename, ImportAction::Skip});
}

void ImportPlanner::offerBookConflict(ImportItem &item, const FolderIndex::Entry &existing)
{
    item.target = existing.relative;
    item.renamed = freeName(item.target);
    const BookSource earlier = m_sources.value(key(existing.relative));
    if (item.isPage() && key(earlier.path) == key(item.remembered)) {
        offerNewVersion(item, earlier, existing.status);
    } else if (!item.isMade()
               && sameBytes(item, m_bookFolder + existing.relative, existing.status.size)) {
        item.conflict = u"the same file is in the book"_s;
        propose(item, {ImportAction::KeepSame});
    } else if (existing.status.readOnly) {
        item.conflict = u"the book has a locked file of this name"_s;
        propose(item, {ImportAction::Skip, ImportAction::Rename});
    } else {
        item.conflict = u"the book has a file of this name"_s;
        propose(item, {ImportAction::Skip, ImportAction::Replace, ImportAction::Rename});
    }
}

/// The page was added from this very source before.
void ImportPlanner::offerNewVersion(ImportItem &item, const BookSource &earlier,
                                    const FileStatus &page)
{
    const QString path = m_bookFolder + item.target;
    const bool edited = wasEdited(earlier, path);
    const bool same = item.isMade() ? item.sum == earlier.sum.toLatin1() && !edited
                                    : sameBytes(item, path, page.size);
    if (same) {
        item.conflict = u"the same file is in the book"_s;
        propose(item, {ImportAction::KeepSame});
        return;
    }
    item.conflict =
        (edited ? u"the page was edited here since it was added; here %1, source %2"_s
                : u"the book has an earlier version; here %1, source %2"_s)
            .arg(sizeAndDate(page.size, page.modified), sizeAndDate(item.size, item.modified));
    if (page.readOnly) {
        item.conflict += u"; the page is locked"_s;
        propose(item, {ImportAction::Skip});
    } else if (edited) {
        propose(item, {ImportAction::Skip, ImportAction::Replace});
    } else {
        propose(item, {ImportAction::Replace, ImportAction::Skip});
    }
}

bool ImportPlanner::wasEdited(const BookSource &earlier, const QString &page)
{
    const QByteArray sum = checksumText(m_files.readFile(page));
    return sum != (earlier.pageSum.isEmpty() ? earlier.sum : earlier.pageSum).toLatin1();
}

/// "name-2.htm", or the next number that neither the book nor this import uses.
QString ImportPlanner::freeName(const QString &target)
{
    const qsizetype dot = target.lastIndexOf(u'.');
    const qsizetype stem = dot > target.lastIndexOf(u'\\') ? dot : target.size();
    for (int number = 2;; ++number) {
        const QString name =
            target.first(stem) + u'-' + QString::number(number) + target.sliced(stem);
        if (m_wanted.contains(key(name)) || m_book.find(name))
            continue;
        m_wanted.insert(key(name));
        return name;
    }
}

bool ImportPlanner::sameBytes(const ImportItem &item, const QString &other, qint64 otherSize)
{
    return item.size == otherSize && m_files.readFile(item.source) == m_files.readFile(other);
}
