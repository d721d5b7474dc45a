#include "tools/migration/SafeNames.h"

#include "platform/Paths.h"
#include "tools/Checksum.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 100;
constexpr qsizetype longestBytes = 200; // disks take 255, temporary files add some
constexpr qsizetype longestEnding = 12;
constexpr qsizetype sumDigits = 8;

bool isUnsafe(char32_t c)
{
    static constexpr std::array kinds{QChar::Other_Control, QChar::Other_Format,
                                      QChar::Other_Surrogate, QChar::Separator_Line,
                                      QChar::Separator_Paragraph};
    const bool isPlain = c < 128; // links would have to escape the last two
    return (isPlain && R"(\/:*?"<>|#%)"_L1.contains(QChar(static_cast<char16_t>(c))))
           || QChar::isNonCharacter(c)
           || std::find(kinds.begin(), kinds.end(), QChar::category(c)) != kinds.end();
}

QString withSafeCharacters(const QString &name)
{
    QList<uint> characters = name.toUcs4();
    std::replace_if(characters.begin(), characters.end(), isUnsafe, uint(u'_'));
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.constData()),
                             characters.size());
}

QString trimmed(const QString &name)
{
    const auto isFiller = [](QChar c) { return c == u'.' || c.isSpace(); };
    qsizetype from = 0, end = name.size();
    while (from < end && isFiller(name.at(from)))
        ++from;
    while (end > from && isFiller(name.at(end - 1)))
        --end;
    return name.sliced(from, end - from);
}

qsizetype endingOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? dot : name.size();
}

QString notTooLong(const QString &name)
{
    if (name.size() <= longestName && name.toUtf8().size() <= longestBytes)
        return name;
    QString ending = name.sliced(endingOf(name));
    if (ending.size() > longestEnding)
        ending.clear();
    const QString sum = u'_' + QString::fromLatin1(checksumText(name.toUtf8()).first(sumDigits));
    const qsizetype taken = (sum + ending).toUtf8().size();
    QString stem = name.first(std::min(name.size(), longestName - sum.size() - ending.size()));
    if (stem.back().isHighSurrogate())
        stem.chop(1);
    return shortened(stem, longestBytes - taken) + sum + ending;
}

bool isWorkingFile(const QString &name)
{
    static const QRegularExpression working(u"\\.(?:qvtmp[0-9]*|qvnew|qvold|qvdel[0-9]*|lock)$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return working.match(name).hasMatch();
}

QString withoutDrive(const QString &path)
{
    const bool hasDrive = path.size() > 1 && path.at(1) == u':' && path.at(0).isLetter();
    return hasDrive ? path.sliced(2) : path;
}

} // namespace

QString safeName(const QString &name)
{
    QString safe = notTooLong(trimmed(withSafeCharacters(name)));
    if (isWorkingFile(safe) || safe.isEmpty())
        safe += u'_';
    return isSafeName(safe) ? safe : u'_' + safe; // the name of a device
}

QStringList safePieces(const QString &path)
{
    QStringList pieces;
    const QString plain = withoutDrive(QString(path).replace(u'/', u'\\'));
    for (const QString &piece : plain.split(u'\\', Qt::SkipEmptyParts)) {
        const QString bare = piece.trimmed();
        if (bare == ".."_L1 && !pieces.isEmpty())
            pieces.removeLast();
        else if (!bare.isEmpty() && bare != "."_L1 && bare != ".."_L1)
            pieces.append(safeName(piece));
    }
    return pieces;
}

QString safeAtTop(const QString &name)
{
    static const QRegularExpression own(u"^(?:qv_.*\\.(?:xml|bin)|qv.*_server\\.zip)$"_s,
                                        QRegularExpression::CaseInsensitiveOption);
    if (own.match(name).hasMatch())
        return u'_' + name;
    return name.endsWith("_Log.txt"_L1, Qt::CaseInsensitive) ? withAddition(name, u"_"_s) : name;
}

QString withAddition(const QString &name, const QString &addition)
{
    return QString(name).insert(endingOf(name), addition);
}
