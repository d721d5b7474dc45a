#include "projectfiles/changes/StagedFiles.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString spelled(const QString &path)
{
    return withoutBackslash(QString(path).replace(u'/', u'\\'));
}

QString keyOf(const QString &path)
{
    return spelled(path).toCaseFolded();
}

bool changesNothing(const FileStep &step)
{
    return step.kind == FileStep::Kind::Write && step.before == step.after;
}

} // namespace

StagedFiles::StagedFiles(FileSystem &files, QString projectFolder)
    : m_files(files)
    , m_folder(std::move(projectFolder))
{
}

FileChanges StagedFiles::changes() const
{
    FileChanges all = m_changes;
    all.steps.removeIf(changesNothing);
    return all;
}

void StagedFiles::setAside(const QString &path, const QString &bin)
{
    move(path, bin);
}

FileStatus StagedFiles::status(const QString &path)
{
    if (const auto step = m_written.constFind(keyOf(path)); step != m_written.constEnd()) {
        const auto &content = m_changes.steps.at(*step).after;
        return content ? FileStatus{FileKind::File, content->size(), {}, false} : FileStatus{};
    }
    if (const auto folder = m_folders.constFind(keyOf(path)); folder != m_folders.constEnd())
        return *folder ? FileStatus{FileKind::Folder, 0, {}, false} : FileStatus{};
    const auto real = origin(path);
    return real ? m_files.status(*real) : FileStatus{};
}

QByteArray StagedFiles::readFile(const QString &path, qint64 limit)
{
    if (const auto step = m_written.constFind(keyOf(path)); step != m_written.constEnd()) {
        const auto &content = m_changes.steps.at(*step).after;
        if (!content)
            raiseMissing(path);
        return limit < 0 ? *content : content->first(qMin(limit, content->size()));
    }
    const auto real = origin(path);
    if (!real)
        raiseMissing(path);
    // What a command was told once stays so: it may have drawn conclusions.
    if (const auto seen = m_seen.constFind(keyOf(*real)); seen != m_seen.constEnd())
        return limit < 0 ? seen->bytes : seen->bytes.first(qMin(limit, seen->bytes.size()));
    if (limit >= 0)
        return m_files.readFile(*real, limit);
    // The stamp is taken first: a change while we read is then noticed rather than missed.
    const FileStamp stamp = stampOf(m_files, *real);
    const QByteArray bytes = m_files.readFile(*real);
    m_seen.insert(keyOf(*real), {stamp, bytes});
    return bytes;
}

void StagedFiles::replaceFile(const QString &path, const QByteArray &content, ReplaceOptions)
{
    if (isBackup(path))
        return;
    const FileStatus there = status(path);
    if (there.readOnly && !m_allowsLocked)
        throw QvError(PermissionDenied, {},
                      u"The file cannot be written, it is read-only: "_s + path);
    if (there.kind != FileKind::File && there.kind != FileKind::Missing)
        throw QvError(PathFileAccess, {},
                      u"The file cannot be written, it is no ordinary file: "_s + path);
    if (there.kind == FileKind::Missing)
        requireFolder(parentFolder(path));
    stage(path, content);
}

void StagedFiles::copyFile(const QString &from, const QString &to, NameCheck)
{
    requireFree(to);
    replaceFile(to, readFile(from));
}

void StagedFiles::makeFolder(const QString &path, NameCheck)
{
    if (isBackup(path))
        return;
    requireFree(path);
    requireFolder(parentFolder(withoutBackslash(path)));
    m_changes.steps.append({.kind = FileStep::Kind::MakeFolder, .path = relative(path)});
    m_folders.insert(keyOf(path), true);
    m_names.insert(keyOf(path), lastComponent(path));
    m_written.remove(keyOf(path));
}

void StagedFiles::move(const QString &from, const QString &to, NameCheck)
{
    if (!exists(from))
        raiseMissing(from);
    const bool onlyCapitals =
        keyOf(from) == keyOf(to) && lastComponent(asItLies(from)) != lastComponent(to);
    if (!onlyCapitals)
        requireFree(to);
    requireFolder(parentFolder(withoutBackslash(to)));
    if (!onlyCapitals && carriedOver(keyOf(to), keyOf(from), {}))
        throw QvError(PathFileAccess, {}, u"A folder cannot be moved into itself: "_s + from);
    noteMove(from, to);
}

void StagedFiles::noteMove(const QString &from, const QString &to)
{
    m_changes.steps.append(
        {.kind = FileStep::Kind::Move, .path = asItLies(from), .to = relative(to)});
    m_moves.append({spelled(from), spelled(to)});
    m_written = carriedKeys(m_written, keyOf(from), keyOf(to));
    m_folders = carriedKeys(m_folders, keyOf(from), keyOf(to));
    m_names = carriedKeys(m_names, keyOf(from), keyOf(to));
    m_names.insert(keyOf(to), lastComponent(to));
}

void StagedFiles::removeFile(const QString &path, bool evenReadOnly)
{
    if (isBackup(path))
        return;
    const FileStatus there = status(path);
    if (there.kind == FileKind::Missing)
        raiseMissing(path);
    if (there.kind != FileKind::File)
        throw QvError(PathFileAccess, {},
                      u"The file cannot be deleted, it is no ordinary file: "_s + path);
    if (there.readOnly && !evenReadOnly)
        throw QvError(PermissionDenied, {},
                      u"The file cannot be deleted, it is read-only: "_s + path);
    stage(path, std::nullopt);
}

void StagedFiles::removeFolder(const QString &path)
{
    if (isBackup(path))
        return;
    requireFolder(path);
    if (!entries(path).isEmpty())
        throw QvError(PathFileAccess, {},
                      u"The folder cannot be deleted, it is not empty: "_s + path);
    m_changes.steps.append({.kind = FileStep::Kind::RemoveFolder, .path = asItLies(path)});
    m_folders.insert(keyOf(path), false);
}

QList<FolderEntry> StagedFiles::entries(const QString &folder)
{
    if (isBackup(folder) && !exists(folder))
        return {}; // makeFolder said that it was there
    requireFolder(folder);
    const QString base = spelled(folder) + u'\\';
    QHash<QString, FolderEntry> found;
    if (const auto real = origin(folder); real && m_files.folderExists(*real)) {
        for (const FolderEntry &entry : m_files.entries(*real)) {
            if (!isHidden(base + entry.name))
                found.insert(entry.name.toCaseFolded(), entry);
        }
    }
    for (auto name = m_names.cbegin(); name != m_names.cend(); ++name) {
        if (parentFolder(name.key()) != keyOf(base) + u'\\')
            continue;
        if (const FileStatus there = status(name.key()); there.kind != FileKind::Missing)
            found.insert(lastComponent(name.key()), {*name, there});
    }
    QList<FolderEntry> entries = found.values();
    std::ranges::sort(entries, {}, &FolderEntry::name);
    return entries;
}

// Whether what lies on the disk there was moved away, or removed.
bool StagedFiles::isHidden(const QString &path) const
{
    const QString key = keyOf(path);
    if (const auto step = m_written.constFind(key); step != m_written.constEnd())
        return !m_changes.steps.at(*step).after;
    if (const auto folder = m_folders.constFind(key); folder != m_folders.constEnd())
        return !*folder;
    return !origin(path);
}

int StagedFiles::attributes(const QString &path)
{
    const auto real = origin(path);
    return real && m_files.exists(*real) ? m_files.attributes(*real) : 0;
}

void StagedFiles::setAttributes(const QString &path, int)
{
    throw QvError(InvalidCall, {}, u"Attributes are no part of a change: "_s + path);
}

std::unique_ptr<FileLock> StagedFiles::lock(const QString &path, const QString &like,
                                            std::chrono::milliseconds patience)
{
    return m_files.lock(path, like, patience);
}

QString StagedFiles::nativePath(const QString &path)
{
    return m_files.nativePath(path);
}

QString StagedFiles::productPath(const QString &native)
{
    return m_files.productPath(native);
}

QString StagedFiles::relative(const QString &path) const
{
    const QString full = spelled(path);
    if (!full.startsWith(m_folder, Qt::CaseInsensitive))
        throw QvError(PathFileAccess, {}, u"This does not lie in the project: "_s + path);
    return full.sliced(m_folder.size());
}

// The path with the capitals that its name has, so that undoing brings back that very name.
QString StagedFiles::asItLies(const QString &path)
{
    QString name = m_names.value(keyOf(path));
    const auto real = origin(path);
    if (name.isEmpty() && real)
        name = lastComponent(m_files.nativePath(*real));
    const QString asked = relative(path);
    return name.isEmpty() ? asked : parentFolder(asked) + name;
}

// The place on the disk of what lies at `path` now; nothing when that was moved away.
std::optional<QString> StagedFiles::origin(const QString &path) const
{
    QString at = spelled(path);
    for (auto move = m_moves.crbegin(); move != m_moves.crend(); ++move) {
        if (const auto before = carriedOver(at, move->to, move->from))
            at = *before;
        else if (carriedOver(at, move->from, move->to))
            return std::nullopt;
    }
    return at;
}

bool StagedFiles::isBackup(const QString &path) const
{
    return carriedOver(spelled(path), m_folder + ProjectFile::backupFolder, {}).has_value();
}

void StagedFiles::requireFree(const QString &path)
{
    if (exists(path))
        throw QvError(PathFileAccess, {}, u"There is a file or folder of that name: "_s + path);
}

void StagedFiles::requireFolder(const QString &path)
{
    if (!folderExists(path))
        throw QvError(PathNotFound, {}, u"The folder is not there: "_s + path);
}

void StagedFiles::raiseMissing(const QString &path)
{
    throw QvError(FileNotFound, {}, u"The file is not there: "_s + path);
}

void StagedFiles::stage(const QString &path, std::optional<QByteArray> content)
{
    const QString key = keyOf(path);
    if (!exists(path)) // else it keeps the name it has
        m_names.insert(key, lastComponent(path));
    const QString place = asItLies(path);
    const auto known = m_written.constFind(key);
    if (known == m_written.constEnd()) {
        stageFirst(path, std::move(content));
        return;
    }
    FileStep &earlier = m_changes.steps[*known];
    // In other capitals it was renamed since, or comes back after it was removed.
    const bool isSame = earlier.path.compare(place, Qt::CaseInsensitive) == 0
                        && lastComponent(earlier.path) == lastComponent(place);
    if (isSame) {
        earlier.after = std::move(content);
        return;
    }
    FileStep step{.path = place, .before = earlier.after, .after = std::move(content)};
    m_written.insert(key, m_changes.steps.size());
    m_changes.steps.append(std::move(step));
}

void StagedFiles::stageFirst(const QString &path, std::optional<QByteArray> content)
{
    const auto real = origin(path);
    std::optional<QByteArray> before;
    const bool isThere = exists(path);
    if (isThere) {
        if (!m_seen.contains(keyOf(*real)))
            (void)readFile(path);
        before = m_seen.value(keyOf(*real)).bytes;
    }
    if (before == content)
        return;
    // What this change itself took away is there no longer, whatever the disk says now.
    if (real && (isThere || !m_files.exists(*real)))
        m_changes.expected.append({relative(*real), m_seen.value(keyOf(*real)).stamp, before});
    m_written.insert(keyOf(path), m_changes.steps.size());
    m_changes.steps.append({.path = asItLies(path), .before = before, .after = std::move(content)});
}
