#include "platform/windows/WindowsPaths.h"

#include "platform/Paths.h"
#include "platform/windows/WindowsErrors.h"

#include <QDir>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

bool startsWithDrive(QStringView path, QChar mark = u':')
{
    const auto isLetter = [](QChar c) { return c.isLetter() && c.unicode() < 128; };
    return path.size() >= 2 && isLetter(path[0]) && path[1] == mark
           && (path.size() == 2 || path[2] == u'\\');
}

bool isOnMachinesDrive(QStringView path)
{
    return path.startsWith(u'\\') && startsWithDrive(path.sliced(1), u'$');
}

/// "\a\\b\" as "\a\b".
QString checkedComponents(const QString &text, const QString &path)
{
    QString result;
    const QStringList components = text.split(u'\\', Qt::SkipEmptyParts);
    for (const QString &component : components) {
        if (component == "."_L1 || component == ".."_L1)
            raiseFileError(PathFileAccess, "A path must not hold \".\" or \"..\""_L1, path);
        if (!isSafeName(component)) // "x.", "nul" and "a:b" are read as other names
            raiseFileError(PathFileAccess, "Windows has no such file name"_L1, path);
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
        raiseFileError(PathFileAccess, "The path holds characters that no file name can hold"_L1,
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
            raiseFileError(PathNotFound, "The network name has no folder"_L1, path);
    } else if (!m_drives.isEmpty() && isOnMachinesDrive(text)) {
        result = text[1] + u":"_s + checkedComponents(text.sliced(3), path);
    } else if (!m_drives.isEmpty() && text.startsWith(u'\\') && !text.startsWith("\\\\"_L1)) {
        result = m_drives + checkedComponents(text, path);
    } else {
        raiseFileError(PathNotFound, "The path is not a full one"_L1, path);
    }
    if (result.endsWith(u':'))
        result += u'\\';
    return result.toStdWString();
}

bool WindowsPaths::isMappedDrive(const std::wstring &native) const
{
    return !m_drives.isEmpty() && native.size() == size_t(m_drives.size()) + 2
           && native.starts_with(m_drives.toStdWString() + L'\\');
}

QString WindowsPaths::product(const QString &native) const
{
    QString path =
        QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(native)));
    if (m_drives.isEmpty())
        return path;
    const bool isBelow = path.startsWith(m_drives + u'\\', Qt::CaseInsensitive);
    const QString below = isBelow ? path.sliced(m_drives.size() + 1) : QString();
    const bool onDrive = below.size() == 1 || (below.size() > 1 && below[1] == u'\\');
    if (!onDrive)
        return u'\\' + path[0] + u'$' + path.sliced(2);
    return below[0].toUpper() + u":\\"_s + below.sliced(qMin(below.size(), qsizetype(2)));
}
