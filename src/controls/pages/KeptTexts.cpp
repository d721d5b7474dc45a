#include "controls/pages/KeptTexts.h"

#include "platform/Paths.h"
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

} // namespace

KeptTexts::KeptTexts(FileSystem &files)
    : m_files(files)
{
}

QString KeptTexts::keep(const QString &projectFolder, const QString &page, const QString &text,
                        const QString &place)
{
    const QString path = place.isEmpty() ? freePlace(projectFolder, page) : place;
    makeFolders(projectFolder, path);
    m_files.replaceFile(path, encodePage(text, {"UTF-8"}));
    return path;
}

QStringList KeptTexts::placesOf(const QString &projectFolder, const QString &page)
{
    QList<std::pair<QDateTime, QString>> kept;
    for (int number = 1; number <= mostTexts; ++number) {
        const QString path = place(projectFolder, page, number);
        if (const FileStatus status = m_files.status(path); status.kind == FileKind::File)
            kept.append({status.modified, path});
    }
    std::stable_sort(kept.begin(), kept.end(),
                     [](const auto &a, const auto &b) { return a.first > b.first; });
    QStringList paths;
    for (const auto &entry : kept)
        paths.append(entry.second);
    return paths;
}

QString KeptTexts::freePlace(const QString &projectFolder, const QString &page)
{
    for (int number = 1; number <= mostTexts; ++number) {
        const QString path = place(projectFolder, page, number);
        if (!m_files.exists(path))
            return path;
    }
    return placesOf(projectFolder, page).constLast();
}

QString KeptTexts::textIn(const QString &place)
{
    return QString::fromUtf8(m_files.readFile(place));
}

void KeptTexts::forget(const QString &place)
{
    if (m_files.fileExists(place))
        m_files.removeFile(place);
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
        if (entry.status.kind == FileKind::File)
            pages.append(below + withoutNumber(entry.name));
        else if (entry.status.kind == FileKind::Folder && depth < deepest)
            collect(folder + u'\\' + entry.name, below + entry.name + u'\\', pages, depth + 1);
    }
}
