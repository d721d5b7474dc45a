#include "controls/pages/KeptTexts.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/PageText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostTexts = 5; // of one page
constexpr int deepest = 64;

QString keptFolder(const QString &projectFolder)
{
    return projectFolder + ProjectFile::backupFolder + u"\\Recovered\\"_s;
}

QString place(const QString &projectFolder, const QString &page, int number)
{
    const QString first = keptFolder(projectFolder) + page;
    return number == 1 ? first : first + u'~' + QString::number(number);
}

/// The page's name in that of a file that keeps its text.
QString withoutNumber(const QString &name)
{
    const bool numbered = name.size() > 2 && name[name.size() - 2] == u'~';
    return numbered && name.back().isDigit() ? name.chopped(2) : name;
}

QString like(const QString &projectFolder)
{
    return projectFolder + ProjectFile::toc;
}

} // namespace

KeptTexts::KeptTexts(FileSystem &files)
    : m_files(files)
{
}

std::unique_ptr<KeptPlace> KeptTexts::take(const QString &projectFolder, const QString &page)
{
    makeFolders(projectFolder, place(projectFolder, page, 1));
    if (auto free = freePlace(projectFolder, page))
        return free;
    if (auto oldest = oldestPlace(projectFolder, page))
        return oldest;
    throw QvError(PermissionDenied, {},
                  u"The unsaved text of this page cannot be kept: others keep text of it already, "
                  "in %1 and beside it. Save the page."_s.arg(place(projectFolder, page, 1)));
}

std::unique_ptr<KeptPlace> KeptTexts::freePlace(const QString &projectFolder, const QString &page)
{
    for (int number = 1; number <= mostTexts; ++number) {
        const QString path = place(projectFolder, page, number);
        if (m_files.exists(path) || keeperOf(m_files, path) != Keeper::Gone)
            continue;
        auto free = KeptPlace::take(m_files, path, like(projectFolder));
        if (free && !m_files.exists(path)) // or another program was faster
            return free;
    }
    return {};
}

std::unique_ptr<KeptPlace> KeptTexts::oldestPlace(const QString &projectFolder, const QString &page)
{
    const QList<KeptText> left = leftOf(projectFolder, page);
    for (auto text = left.crbegin(); text != left.crend(); ++text) {
        if (text->mayBeNeeded)
            continue;
        if (auto oldest = KeptPlace::claim(m_files, text->place, like(projectFolder)))
            return oldest;
    }
    return {};
}

void KeptTexts::keep(const KeptPlace &place, const QString &text)
{
    m_files.replaceFile(place.path(), encodePage(text, {"UTF-8"}));
}

void KeptTexts::forget(const KeptPlace &place)
{
    if (m_files.fileExists(place.path()))
        m_files.removeFile(place.path());
}

QList<KeptText> KeptTexts::leftOf(const QString &projectFolder, const QString &page)
{
    QList<std::pair<QDateTime, KeptText>> left;
    for (int number = 1; number <= mostTexts; ++number) {
        const QString path = place(projectFolder, page, number);
        const FileStatus status = m_files.status(path);
        if (status.kind != FileKind::File)
            continue;
        if (const Keeper keeper = keeperOf(m_files, path); keeper != Keeper::Running)
            left.append({status.modified, {path, keeper == Keeper::Unknown}});
    }
    std::stable_sort(left.begin(), left.end(),
                     [](const auto &a, const auto &b) { return a.first > b.first; });
    QList<KeptText> texts;
    for (const auto &entry : left)
        texts.append(entry.second);
    return texts;
}

QString KeptTexts::textIn(const QString &place)
{
    return QString::fromUtf8(m_files.readFile(place));
}

void KeptTexts::discard(const QString &place)
{
    if (!m_files.fileExists(place))
        return;
    const auto explain = [&](const QvError &error) {
        throw QvError(PermissionDenied, {},
                      u"%1 was not discarded: nobody can tell whether an author who is working on "
                      "the page still needs it. %2. If you are sure that nobody does, delete that "
                      "file yourself."_s.arg(place, error.description()));
    };
    const auto claimed = trap(explain, [&] { return KeptPlace::claim(m_files, place, place); });
    if (!claimed)
        throw QvError(PermissionDenied, {},
                      u"%1 was not discarded: another QV Developer keeps it for an author who is "
                      "working on the page."_s.arg(place));
    forget(*claimed);
}

void KeptTexts::makeFolders(const QString &projectFolder, const QString &file)
{
    QString folder = withoutBackslash(projectFolder);
    const QString below = parentFolder(file).sliced(projectFolder.size());
    for (const QString &piece : below.split(u'\\', Qt::SkipEmptyParts)) {
        folder += u'\\' + piece;
        if (!m_files.folderExists(folder))
            m_files.makeFolder(folder);
    }
}

QStringList KeptTexts::pages(const QString &projectFolder)
{
    QStringList pages;
    const QString folder = withoutBackslash(keptFolder(projectFolder));
    if (m_files.folderExists(folder))
        collect(folder, {}, pages, 0);
    pages.removeDuplicates();
    return pages;
}

void KeptTexts::collect(const QString &folder, const QString &below, QStringList &pages, int depth)
{
    for (const FolderEntry &entry : m_files.kinds(folder)) {
        const QString path = folder + u'\\' + entry.name;
        if (const QString file = fileOfLock(path); !file.isEmpty())
            (void)keeperOf(m_files, file); // a lock of which the text has gone goes too
        else if (entry.status.kind == FileKind::File && keeperOf(m_files, path) != Keeper::Running)
            pages.append(below + withoutNumber(entry.name));
        else if (entry.status.kind == FileKind::Folder && depth < deepest)
            collect(path, below + entry.name + u'\\', pages, depth + 1);
    }
}
