#include "tools/PageSkeleton.h"

using namespace Qt::StringLiterals;

namespace {

struct LanguageTag
{
    QLatin1StringView project, tag;
};
constexpr LanguageTag tags[]{{"ENU"_L1, "en"_L1},    {"DEU"_L1, "de"_L1},    {"JPN"_L1, "ja"_L1},
                             {"CHS"_L1, "zh-CN"_L1}, {"CHT"_L1, "zh-TW"_L1}, {"KOR"_L1, "ko"_L1}};

QString languageAttribute(const QString &projectLanguage)
{
    const QLatin1StringView tag = languageTag(projectLanguage);
    return tag.isEmpty() ? QString() : u" lang=\"%1\""_s.arg(tag);
}

} // namespace

QLatin1StringView languageTag(const QString &projectLanguage)
{
    for (const LanguageTag &known : tags) {
        if (projectLanguage.compare(known.project, Qt::CaseInsensitive) == 0)
            return known.tag;
    }
    return {};
}

QString wholePage(const QString &title, const QString &projectLanguage, const QString &body)
{
    return u"<!DOCTYPE html>\n<html"_s + languageAttribute(projectLanguage)
           + u">\n<head>\n<meta charset=\"utf-8\">\n<title>"_s + title.toHtmlEscaped()
           + u"</title>\n</head>\n<body>\n"_s + body + u"</body>\n</html>\n"_s;
}

QByteArray newPage(const QString &title, const QString &projectLanguage)
{
    const QString body = u"<h1>%1</h1>\n<p></p>\n"_s.arg(title.toHtmlEscaped());
    return wholePage(title, projectLanguage, body).toUtf8().replace("\n", "\r\n");
}
