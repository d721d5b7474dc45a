// Markdown as a page.

#include "platform/QvError.h"
#include "tools/html/HtmlEntities.h"
#include "tools/html/HtmlScan.h"
#include "tools/html/HtmlTokens.h"
#include "tools/import/PageConversion.h"

#include <QHash>

#include <md4c-html.h>

using namespace Qt::StringLiterals;

namespace {

void append(const MD_CHAR *piece, MD_SIZE size, void *html)
{
    static_cast<QByteArray *>(html)->append(piece, size);
}

QString rendered(QStringView text)
{
    const QByteArray source = text.toUtf8();
    QByteArray html;
    if (md_html(source.constData(), static_cast<MD_SIZE>(source.size()), append, &html,
                MD_DIALECT_GITHUB, 0)
        != 0)
        throw QvError(InvalidCall, {}, u"The Markdown text cannot be converted."_s);
    return QString::fromUtf8(html);
}

/// What a link to a heading says behind "#": small letters, blanks as "-", no other punctuation.
QString headingId(const QString &heading)
{
    QString id;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c.isMark() || c.isSurrogate() || c == u'-' || c == u'_')
            id += c;
        else if (c == u' ')
            id += u'-';
    }
    return id;
}

bool isHeading(HtmlTag tag)
{
    return tag >= HtmlTag::H1 && tag <= HtmlTag::H6;
}

/// `html` with an id in each heading that has no attributes.
QString withHeadingIds(const QString &html)
{
    QString result, heading;
    QHash<QString, int> given;
    qsizetype from = 0, place = -1; // where the id goes
    HtmlTokens tokens(html);
    for (;;) {
        const HtmlToken &token = tokens.next();
        if (token.kind == HtmlToken::Kind::End)
            return result += QStringView(html).sliced(from);
        if (token.kind == HtmlToken::Kind::StartTag && isHeading(token.tag)
            && token.attributes.empty()) {
            place = token.text.end() - html.constBegin();
            heading.clear();
        } else if (token.kind == HtmlToken::Kind::Text && place >= 0) {
            heading += token.text;
        } else if (token.kind == HtmlToken::Kind::EndTag && isHeading(token.tag) && place >= 0) {
            QString id = headingId(plainText(heading));
            if (const int before = given[id]++; before > 0)
                id += u'-' + QString::number(before);
            result += QStringView(html).sliced(from, place - from);
            result += u" id=\""_s + id.toHtmlEscaped() + u'"';
            from = place;
            place = -1;
        }
    }
}

/// Cuts off the lines between "---" at the start of a text and gives the title they say.
QString takeFrontMatter(QString &text)
{
    const bool begins = text.startsWith("---\n"_L1);
    const qsizetype end = begins ? text.indexOf("\n---\n"_L1, 3) : -1;
    if (end < 0)
        return {};
    QString title;
    for (const QString &line : text.first(end).split(u'\n')) {
        if (line.startsWith("title:"_L1))
            title = line.sliced(6).trimmed();
    }
    if (title.size() > 1 && (title.front() == u'"' || title.front() == u'\'')
        && title.back() == title.front())
        title = title.sliced(1, title.size() - 2);
    text.remove(0, end + 5);
    return title;
}

} // namespace

ConvertedPage pageFromMarkdown(QStringView text)
{
    QString source = text.toString();
    source.replace("\r\n"_L1, "\n"_L1);
    ConvertedPage page;
    page.title = takeFrontMatter(source);
    page.body = withHeadingIds(rendered(source));
    const QString heading = scanHtml(page.body).firstHeading;
    if (page.title.isEmpty())
        page.title = heading;
    return page;
}
