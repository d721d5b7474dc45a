// Plain text as a page.

#include "tools/import/PageConversion.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The lines of a text, without their ends; control characters, which no page may hold, are left
/// out.
QStringList linesOf(QStringView text)
{
    QString plain = text.toString();
    plain.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').replace(u'\f', u'\n');
    plain.removeIf(
        [](QChar c) { return c != u'\n' && c != u'\t' && c.category() == QChar::Other_Control; });
    return plain.split(u'\n');
}

bool isBlank(const QString &line)
{
    return line.trimmed().isEmpty();
}

bool isLaidOut(const QString &line)
{
    return line.startsWith(u' ') || line.contains(u'\t');
}

QString block(const QStringList &lines)
{
    const QString text = lines.join(u'\n').toHtmlEscaped();
    if (std::any_of(lines.begin(), lines.end(), isLaidOut))
        return u"<pre>"_s + text + u"</pre>\n"_s;
    return u"<p>"_s + text + u"</p>\n"_s;
}

/// The rule that some people draw below a title.
bool isRule(const QString &line)
{
    const QString rule = line.trimmed();
    return rule.size() >= 3 && (rule.front() == u'=' || rule.front() == u'-')
           && rule.count(rule.front()) == rule.size();
}

} // namespace

ConvertedPage pageFromText(QStringView text)
{
    const QStringList lines = linesOf(text);
    auto line = std::find_if_not(lines.begin(), lines.end(), isBlank);
    if (line == lines.end())
        return {};
    ConvertedPage page;
    page.title = line->simplified();
    page.body = u"<h1>"_s + page.title.toHtmlEscaped() + u"</h1>\n"_s;
    if (++line != lines.end() && isRule(*line))
        ++line;
    while (line != lines.end()) {
        const auto end = std::find_if(line, lines.end(), isBlank);
        if (end != line)
            page.body += block(QStringList(line, end));
        line = end == lines.end() ? end : end + 1;
    }
    return page;
}
