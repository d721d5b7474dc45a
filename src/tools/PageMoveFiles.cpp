#include "tools/PageMove.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void raise(const QString &path, const QString &reason)
{
    throw QvError(
        PathFileAccess, {},
        u"The links in %1 cannot be changed: %2 Nothing was changed."_s.arg(path, reason));
}

/// `text` with the changes made; nothing when it is no longer what they were worked out from.
std::optional<QString> changed(const QString &text, const QList<LinkChange> &changes)
{
    QString result;
    qsizetype from = 0;
    for (const LinkChange &change : changes) {
        if (change.start < from || change.start + change.length > text.size()
            || QStringView(text).sliced(change.start, change.length) != change.before)
            return {};
        result += QStringView(text).sliced(from, change.start - from);
        result += change.after;
        from = change.start + change.length;
    }
    return result += QStringView(text).sliced(from);
}

qsizetype occurrences(QStringView text, const QString &part)
{
    qsizetype count = 0;
    for (qsizetype at = text.indexOf(part); at >= 0; at = text.indexOf(part, at + 1))
        ++count;
    return count;
}

/// Where the `number`-th occurrence of `part` begins; -1 when there are fewer.
qsizetype placeOf(const QByteArray &bytes, const QByteArray &part, qsizetype number)
{
    qsizetype at = bytes.indexOf(part);
    while (at >= 0 && number-- > 0)
        at = bytes.indexOf(part, at + 1);
    return at;
}

/// The changes made in the bytes themselves, for encodings that write ASCII as it is: the
/// reference that is the n-th of its text is the n-th in the bytes too. Whoever calls this checks
/// that the result reads as it should.
QByteArray spliced(const QByteArray &bytes, const QString &text, const QList<LinkChange> &changes,
                   const PageEncoding &encoding)
{
    QByteArray result = bytes;
    for (auto change = changes.crbegin(); change != changes.crend(); ++change) {
        const PageEncoding plain{encoding.name, false};
        const QByteArray before = encodePage(change->before, plain);
        const auto number = occurrences(QStringView(text).first(change->start + change->length - 1),
                                        change->before);
        const qsizetype at = placeOf(bytes, before, number);
        if (at < 0)
            return {};
        result.replace(at, before.size(), encodePage(change->after, plain));
    }
    return result;
}

QByteArray rewritten(const QByteArray &bytes, const QString &path, const QList<LinkChange> &changes,
                     const QString &language)
{
    const PageText page = decodePage(bytes, language);
    const auto text = changed(page.text, changes);
    if (!text)
        raise(path, u"The file was changed meanwhile."_s);
    if (!page.damaged && encodePage(page.text, page.encoding) == bytes)
        return encodePage(*text, page.encoding);
    const QByteArray result = spliced(bytes, page.text, changes, page.encoding);
    if (decodePage(result, language).text != *text)
        raise(path, u"Some of its bytes are no text."_s);
    return result;
}

void makeFolders(FileSystem &files, const QString &projectFolder, const QString &folder)
{
    if (folder.isEmpty() || files.folderExists(projectFolder + folder))
        return;
    makeFolders(files, projectFolder, withoutBackslash(parentFolder(folder)));
    files.makeFolder(projectFolder + folder);
}

} // namespace

void rewriteLinks(FileSystem &files, const QString &projectFolder, const PageMove &move,
                  const QString &language, const Progress &progress)
{
    const int total = static_cast<int>(move.changes.size());
    for (int from = 0; from < total;) {
        const QString page = move.changes.at(from).page;
        progress.step(from, total, page);
        QList<LinkChange> changes;
        int next = from;
        for (; next < total && move.changes.at(next).page == page; ++next) {
            if (move.changes.at(next).problem.isEmpty())
                changes.append(move.changes.at(next));
        }
        from = next;
        if (changes.isEmpty())
            continue;
        const QString path = projectFolder + page;
        files.replaceFile(path, rewritten(files.readFile(path), path, changes, language));
    }
}

void moveFiles(FileSystem &files, const QString &projectFolder, const QList<PathMove> &moves)
{
    for (const PathMove &move : moves) {
        makeFolders(files, projectFolder, withoutBackslash(parentFolder(move.to)));
        files.move(projectFolder + move.from, projectFolder + move.to);
    }
}
