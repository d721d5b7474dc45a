#include "tools/import/PageConversion.h"

#include "platform/Paths.h"
#include "tools/PageReference.h"

#include <iterator>

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

struct LanguageTag
{
    QLatin1StringView project, tag;
};
constexpr LanguageTag tags[]{{"ENU"_L1, "en"_L1},    {"DEU"_L1, "de"_L1},    {"JPN"_L1, "ja"_L1},
                             {"CHS"_L1, "zh-CN"_L1}, {"CHT"_L1, "zh-TW"_L1}, {"KOR"_L1, "ko"_L1}};

QString languageAttribute(const QString &projectLanguage)
{
    for (const LanguageTag &known : tags) {
        if (projectLanguage.compare(known.project, Qt::CaseInsensitive) == 0)
            return u" lang=\"%1\""_s.arg(known.tag);
    }
    return {};
}

} // namespace

ImportFormat importFormat(QStringView fileName)
{
    struct Ending
    {
        QLatin1StringView ending;
        ImportFormat format;
    };
    static constexpr Ending endings[]{
        {".txt"_L1, ImportFormat::Text},          {".md"_L1, ImportFormat::Markdown},
        {".markdown"_L1, ImportFormat::Markdown}, {".csv"_L1, ImportFormat::Table},
        {".tsv"_L1, ImportFormat::Table},         {".zip"_L1, ImportFormat::Archive}};
    for (const Ending &known : endings) {
        if (fileName.endsWith(known.ending, Qt::CaseInsensitive))
            return known.format;
    }
    return isPageName(fileName) ? ImportFormat::Html : ImportFormat::Other;
}

bool isConverted(ImportFormat format)
{
    return format == ImportFormat::Text || format == ImportFormat::Markdown
           || format == ImportFormat::Table;
}

ConvertedPage convertedPage(ImportFormat format, QStringView text, const QString &fileName)
{
    ConvertedPage page;
    if (format == ImportFormat::Markdown)
        page = pageFromMarkdown(text);
    else if (format == ImportFormat::Table)
        page = pageFromTable(text, fileName.endsWith(".tsv"_L1, Qt::CaseInsensitive));
    else
        page = pageFromText(text);
    if (!page.title.isEmpty())
        return page;
    const qsizetype dot = fileName.lastIndexOf(u'.');
    page.title = dot > 0 ? fileName.first(dot) : fileName;
    page.body.prepend(u"<h1>%1</h1>\n"_s.arg(page.title.toHtmlEscaped()));
    return page;
}

QString wholePage(const ConvertedPage &page, const QString &projectLanguage)
{
    return u"<!DOCTYPE html>\n<html"_s + languageAttribute(projectLanguage)
           + u">\n<head>\n<meta charset=\"utf-8\">\n<title>"_s + page.title.toHtmlEscaped()
           + u"</title>\n</head>\n<body>\n"_s + page.body + u"</body>\n</html>\n"_s;
}

QString pageFileName(const QString &title)
{
    QString stem;
    for (const QChar letter : title.normalized(QString::NormalizationForm_C)) {
        const bool kept = letter.isLetterOrNumber() || letter.isMark() || letter.isSurrogate()
                          || letter == u'_' || letter == u'.';
        if (kept)
            stem += inAscii(letter);
        else if (!stem.isEmpty() && !stem.endsWith(u'-'))
            stem += u'-';
    }
    stem = shortened(stem, longestStem);
    const auto isFiller = [](QChar c) { return c == u'-' || c == u'.'; };
    while (!stem.isEmpty() && isFiller(stem.back()))
        stem.chop(1);
    while (!stem.isEmpty() && isFiller(stem.front()))
        stem.remove(0, 1);
    const QString name = stem + u".htm"_s;
    return stem.isEmpty() || !isSafeName(name) ? u"page"_s + name : name;
}
