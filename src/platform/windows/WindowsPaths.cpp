#include "platform/windows/WindowsPaths.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QDir>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void raisePathError(int number, QLatin1StringView what, const QString &path)
{
    throw QvError(number, {}, what + u": "_s + path);
}

bool startsWithDrive(const QString &path)
{
    const auto isLetter = [](QChar c) { return c.isLetter() && c.unicode() < 128; };
    return path.size() >= 2 && isLetter(path[0]) && path[1] == u':'
           && (path.size() == 2 || path[2] == u'\\');
}

/// What a program without our care would open under this name is something else.
bool isReadAsAnotherName(const QString &name)
{
    static const QStringList devices = [] {
        QStringList names{u"con"_s, u"prn"_s, u"aux"_s, u"nul"_s};
        for (const QChar digit : u"123456789"_s)
            names << u"com"_s + digit << u"lpt"_s + digit;
        return names;
    }();
    return name.endsWith(u'.') || name.endsWith(u' ')
           || devices.contains(name.section(u'.', 0, 0).trimmed().toLower());
}

/// "\a\\b\" as "\a\b".
QString checkedComponents(const QString &text, const QString &path)
{
    QString result;
    const QStringList components = text.split(u'\\', Qt::SkipEmptyParts);
    for (const QString &component : components) {
        if (component == "."_L1 || component == ".."_L1)
            raisePathError(PathFileAccess, "A path must not hold \".\" or \"..\""_L1, path);
        if (isReadAsAnotherName(component))
            raisePathError(PathFileAccess, "Windows has no such file name"_L1, path);
        result += u'\\' + component;
    }
    return result;
}

} // namespace

WindowsPaths::WindowsPaths(const QString &drivesFolder)
    : m_drives(drivesFolder.isEmpty() ? QString()
                                      : QDir::toNativeSeparators(QDir::cleanPath(
                                          QDir::current().absoluteFilePath(drivesFolder))))
{
}

std::wstring WindowsPaths::native(const QString &path) const
{
    if (!path.isValidUtf16() || path.contains(QChar(u'\0')))
        raisePathError(PathFileAccess, "The path holds characters that no file name can hold"_L1,
                       path);
    QString text = path;
    text.replace(u'/', u'\\');
    QString result;
    if (startsWithDrive(text)) {
        const QString drive =
            m_drives.isEmpty() ? text.first(2) : m_drives + u'\\' + text[0].toLower();
        result = drive + checkedComponents(text.sliced(2), path);
    } else if (m_drives.isEmpty() && text.startsWith("\\\\"_L1)) {
        result = u'\\' + checkedComponents(text, path);
        if (result.count(u'\\') < 3)
            raisePathError(PathNotFound, "The network name has no folder"_L1, path);
    } else if (!m_drives.isEmpty() && text.startsWith(u'\\') && !text.startsWith("\\\\"_L1)) {
        result = m_drives + checkedComponents(text, path);
    } else {
        raisePathError(PathNotFound, "The path is not a full one"_L1, path);
    }
    if (result.endsWith(u':'))
        result += u'\\';
    return result.toStdWString();
}

bool WindowsPaths::isMappedDrive(const std::wstring &native) const
{
    return !m_drives.isEmpty() && native.size() == size_t(m_drives.size()) + 2;
}

QString WindowsPaths::product(const QString &native) const
{
    QString path =
        QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(native)));
    const bool isBelow =
        !m_drives.isEmpty() && path.startsWith(m_drives + u'\\', Qt::CaseInsensitive);
    if (!isBelow)
        return path;
    const QString below = path.sliced(m_drives.size() + 1);
    const bool onDrive = below.size() == 1 || (below.size() > 1 && below[1] == u'\\');
    if (!onDrive)
        return u'\\' + below;
    return below[0].toUpper() + u":\\"_s + below.sliced(qMin(below.size(), qsizetype(2)));
}
