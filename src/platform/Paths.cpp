#include "platform/Paths.h"

#include "platform/FileSystem.h"
#include "platform/QvError.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 255;

bool isSeparator(QChar c)
{
    return c == u'\\' || c == u'/';
}

bool isForbidden(QChar c)
{
    return c.category() == QChar::Other_Control || R"(\/:*?"<>|)"_L1.contains(c);
}

/// Names that Windows keeps for devices, whatever follows the first dot.
bool isDeviceName(const QString &name)
{
    const qsizetype dot = name.indexOf(u'.');
    const QStringView trimmed = QStringView(name).first(dot < 0 ? name.size() : dot).trimmed();
    constexpr qsizetype shortest = 3, longest = 7;
    if (trimmed.size() < shortest || trimmed.size() > longest)
        return false;
    const QString stem = trimmed.toString().toUpper();
    static constexpr std::array plain{"CON"_L1, "PRN"_L1,    "AUX"_L1,
                                      "NUL"_L1, "CONIN$"_L1, "CONOUT$"_L1};
    if (std::find(plain.begin(), plain.end(), stem) != plain.end())
        return true;
    const bool port = stem.size() == 4 && (stem.startsWith("COM"_L1) || stem.startsWith("LPT"_L1));
    return port && u"123456789\u00B9\u00B2\u00B3"_s.contains(stem.back());
}

/// Where the last component begins and ends; separators after it do not count.
struct Span
{
    qsizetype begin;
    qsizetype end;
};

Span lastSpan(const QString &path)
{
    qsizetype end = path.size();
    while (end > 0 && isSeparator(path[end - 1]))
        --end;
    qsizetype begin = end;
    while (begin > 0 && !isSeparator(path[begin - 1]))
        --begin;
    return {begin, end};
}

} // namespace

QString docsFolder(const QString &serverPath)
{
    return serverPath + u"Docs\\"_s;
}

QString cataloguePath(const QString &serverPath)
{
    return docsFolder(serverPath) + u"QV_Selection.xml"_s;
}

QString defaultCategoriesPath(const QString &serverPath)
{
    return docsFolder(serverPath) + u"QV_DefaultCategories.xml"_s;
}

bool isSafeName(const QString &name)
{
    if (name.isEmpty() || name.size() > longestName || !name.isValidUtf16())
        return false;
    if (name.endsWith(u'.') || name.endsWith(u' ') || isDeviceName(name))
        return false;
    return std::none_of(name.begin(), name.end(), isForbidden);
}

QString projectFolder(const QString &serverPath, const QString &name)
{
    if (!isSafeName(name))
        throw QvError(PathFileAccess, {},
                      u"The project name cannot be the name of a folder: "_s + name);
    return docsFolder(serverPath) + name + u'\\';
}

QString existingProjectFolder(FileSystem &files, const QString &serverPath, const QString &name)
{
    const QString folder = projectFolder(serverPath, name);
    switch (files.status(folder).kind) {
    case FileKind::Folder:
        return folder;
    case FileKind::Missing:
        throw QvError(PathNotFound, {}, u"The project folder is not there: "_s + folder);
    case FileKind::Link:
        throw QvError(PathFileAccess, {}, u"The project folder is a link: "_s + folder);
    default:
        throw QvError(PathFileAccess, {}, u"The project folder is no folder: "_s + folder);
    }
}

std::optional<QString> insideOf(const QString &base, const QString &value)
{
    QString relative = value;
    relative.replace(u'/', u'\\');
    if (relative.startsWith(u'\\'))
        return std::nullopt;
    QStringList kept;
    for (const QString &component : relative.split(u'\\', Qt::SkipEmptyParts)) {
        if (component == "."_L1)
            continue;
        if (!isSafeName(component))
            return std::nullopt;
        kept.append(component);
    }
    if (kept.isEmpty())
        return std::nullopt;
    const QString ending = relative.endsWith(u'\\') ? u"\\"_s : QString();
    return withBackslash(base) + kept.join(u'\\') + ending;
}

QString withoutBackslash(const QString &path)
{
    qsizetype size = path.size();
    while (size > 0 && isSeparator(path[size - 1]))
        --size;
    return path.first(size);
}

QString withBackslash(const QString &path)
{
    return withoutBackslash(path) + u'\\';
}

QString lastComponent(const QString &path)
{
    const Span last = lastSpan(path);
    return path.sliced(last.begin, last.end - last.begin);
}

QString parentFolder(const QString &path)
{
    return path.first(lastSpan(path).begin);
}

QString shortened(const QString &name, qsizetype bytes)
{
    QString kept = name;
    while (kept.toUtf8().size() > bytes)
        kept.chop(kept.back().isLowSurrogate() ? 2 : 1);
    return kept;
}
