#include "tools/PageNames.h"

#include "platform/Paths.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestStem = 80; // bytes

struct Spelling
{
    char16_t letter;
    QLatin1StringView ascii;
};
constexpr Spelling spellings[]{{u'ä', "ae"_L1}, {u'ö', "oe"_L1}, {u'ü', "ue"_L1}, {u'Ä', "Ae"_L1},
                               {u'Ö', "Oe"_L1}, {u'Ü', "Ue"_L1}, {u'ß', "ss"_L1}, {u'æ', "ae"_L1},
                               {u'Æ', "Ae"_L1}, {u'ø', "o"_L1},  {u'Ø', "O"_L1},  {u'œ', "oe"_L1},
                               {u'Œ', "Oe"_L1}, {u'ł', "l"_L1},  {u'Ł', "L"_L1},  {u'đ', "d"_L1},
                               {u'Đ', "D"_L1}};

/// A letter as ASCII spells it; itself where ASCII has no form for it.
QString inAscii(QChar letter)
{
    for (const Spelling &spelling : spellings) {
        if (letter == spelling.letter)
            return spelling.ascii;
    }
    const QString pieces = QString(letter).normalized(QString::NormalizationForm_D);
    return pieces.front().unicode() < 128 ? QString(pieces.front()) : QString(letter);
}

bool isFileLetter(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c.isSurrogate() || c == u'_' || c == u'.';
}

bool isPlainLetter(QChar c)
{
    return c.unicode() < 128 && c.isLetterOrNumber();
}

/// The letters that are kept, as ASCII spells them; one hyphen for what is between.
QString hyphenated(const QString &title, bool (*isKept)(QChar))
{
    QString stem;
    for (const QChar letter : title.normalized(QString::NormalizationForm_C)) {
        const QString spelled = inAscii(letter);
        if (isKept(spelled.front()))
            stem += spelled;
        else if (!letter.isMark() && !stem.isEmpty() && !stem.endsWith(u'-'))
            stem += u'-';
    }
    stem = shortened(stem, longestStem);
    const auto isFiller = [](QChar c) { return c == u'-' || c == u'.'; };
    while (!stem.isEmpty() && isFiller(stem.back()))
        stem.chop(1);
    while (!stem.isEmpty() && isFiller(stem.front()))
        stem.remove(0, 1);
    return stem;
}

/// A stem that names no device and is not empty.
QString safeStem(const QString &stem)
{
    return stem.isEmpty() || !isSafeName(stem + u".htm"_s) ? u"page"_s + stem : stem;
}

} // namespace

QString pageFileName(const QString &title)
{
    return safeStem(hyphenated(title, isFileLetter)) + u".htm"_s;
}

QString plainName(const QString &title)
{
    const QString compatible = title.normalized(QString::NormalizationForm_KC);
    return safeStem(hyphenated(compatible, isPlainLetter).toLower());
}

QString newPageFile(const QString &title, const std::function<bool(const QString &)> &isTaken)
{
    const QString name = plainName(title);
    QString file = name + u".htm"_s;
    for (int number = 2; isTaken(file); ++number)
        file = u"%1-%2.htm"_s.arg(name).arg(number);
    return file;
}
