#include "platform/portable/NativePaths.h"

#include "platform/portable/SystemErrors.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool startsWithDrive(const QByteArray &text)
{
    return text.size() >= 2 && isLetter(text[0]) && text[1] == ':'
           && (text.size() == 2 || text[2] == '/');
}

/// Appends the components of `text` to `result`, which ends in a slash.
void appendComponents(QByteArray &result, QByteArrayView text, const QString &path)
{
    const qsizetype root = result.size();
    qsizetype begin = 0;
    while (begin < text.size()) {
        qsizetype end = text.indexOf('/', begin);
        if (end < 0)
            end = text.size();
        const QByteArrayView component = text.sliced(begin, end - begin);
        begin = end + 1;
        if (component.isEmpty())
            continue;
        if (component == "." || component == "..")
            raiseFileError(PathFileAccess, "A path must not hold \".\" or \"..\""_L1, path);
        if (result.size() > root)
            result += '/';
        result += component;
    }
}

} // namespace

NativePaths::NativePaths(const QString &drivesFolder)
    : m_drives(QDir::cleanPath(QDir::current().absoluteFilePath(drivesFolder)))
    , m_drivesBytes(m_drives.toUtf8() + '/')
{
}

QByteArray NativePaths::native(const QString &path) const
{
    if (!path.isValidUtf16() || path.contains(QChar(u'\0')))
        raiseFileError(PathFileAccess, "The path holds characters that no file name can hold"_L1,
                       path);
    QByteArray text = path.toUtf8();
    text.replace('\\', '/');
    if (text.startsWith("//"))
        raiseFileError(PathNotFound,
                       "Network names cannot be used here; connect a drive letter to the folder"
                       " and use that"_L1,
                       path);
    QByteArray result;
    result.reserve(m_drivesBytes.size() + text.size() + 2);
    if (startsWithDrive(text)) {
        result += m_drivesBytes;
        result += static_cast<char>(text[0] | 0x20);
        result += '/';
        appendComponents(result, QByteArrayView(text).sliced(2), path);
    } else if (text.startsWith('/')) {
        result += '/';
        appendComponents(result, QByteArrayView(text).sliced(1), path);
    } else {
        raiseFileError(PathNotFound, "The path is not a full one"_L1, path);
    }
    return result;
}

QByteArray NativePaths::driveOf(const QByteArray &native) const
{
    const qsizetype size = m_drivesBytes.size() + 2;
    const bool onDrive = native.size() >= size && native.startsWith(m_drivesBytes)
                         && isLetter(native[size - 2]) && native[size - 1] == '/';
    return onDrive ? native.first(size) : QByteArray();
}

QString NativePaths::product(const QString &native) const
{
    if (native.contains(u'\\'))
        raiseFileError(PathFileAccess, "A name with a backslash cannot be used"_L1, native);
    QString path = QDir::cleanPath(QDir::current().absoluteFilePath(native));
    const QString below =
        path.startsWith(m_drives + u'/') ? path.sliced(m_drives.size() + 1) : QString();
    const bool onDrive = !below.isEmpty() && isLetter(below[0].toLatin1())
                         && (below.size() == 1 || below[1] == u'/');
    if (onDrive)
        path = below[0].toUpper() + u":/"_s + below.sliced(qMin(below.size(), qsizetype(2)));
    return path.replace(u'/', u'\\');
}
