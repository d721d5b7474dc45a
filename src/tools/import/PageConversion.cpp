#include "tools/import/PageConversion.h"

#include "tools/PageReference.h"
#include "tools/PageSkeleton.h"

using namespace Qt::StringLiterals;

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
    return wholePage(page.title, projectLanguage, page.body);
}
