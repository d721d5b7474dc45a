#include "controls/books/NewPage.h"

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestName = 60;

QString languageTag(const QString &language)
{
    if (language == "DEU"_L1)
        return u"de"_s;
    if (language == "JPN"_L1)
        return u"ja"_s;
    if (language == "KOR"_L1)
        return u"ko"_s;
    if (language == "CHS"_L1)
        return u"zh-Hans"_s;
    return language == "CHT"_L1 ? u"zh-Hant"_s : u"en"_s;
}

QString plainName(const QString &title)
{
    QString name;
    const QString spelled = QString(title).replace(u'\u00df', "ss"_L1);
    for (const QChar c : spelled.normalized(QString::NormalizationForm_KD).toLower()) {
        const bool isPlain = (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
        if (isPlain)
            name += c;
        else if (!c.isMark() && !name.isEmpty() && !name.endsWith(u'-'))
            name += u'-';
    }
    name.truncate(longestName);
    while (name.endsWith(u'-'))
        name.chop(1);
    return name.isEmpty() ? u"page"_s : name;
}
} // namespace

QByteArray newPage(const QString &title, const QString &language)
{
    const QString text = title.toHtmlEscaped();
    return u"<!DOCTYPE html>\r\n"
           "<html lang=\"%1\">\r\n"
           "<head>\r\n"
           "<meta charset=\"utf-8\">\r\n"
           "<title>%2</title>\r\n"
           "</head>\r\n"
           "<body>\r\n"
           "<h1>%2</h1>\r\n"
           "<p></p>\r\n"
           "</body>\r\n"
           "</html>\r\n"_s.arg(languageTag(language), text)
               .toUtf8();
}

QString newPageFile(const QString &title, const std::function<bool(const QString &)> &isTaken)
{
    const QString name = plainName(title);
    QString file = name + u".htm"_s;
    for (int number = 2; isTaken(file); ++number)
        file = u"%1-%2.htm"_s.arg(name).arg(number);
    return file;
}
