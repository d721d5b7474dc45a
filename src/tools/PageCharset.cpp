#include "tools/PageCharset.h"

#include "tools/html/HtmlTokens.h"
#include "tools/html/TagReferences.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// Where a page names character sets, in its order.
QList<QStringView> declarationsOf(const QString &text)
{
    QList<QStringView> declarations;
    static const QRegularExpression xml(u"^\\s*<\\?xml[^>]*\\bencoding\\s*=\\s*[\"']([^\"']+)"_s);
    if (const QRegularExpressionMatch match = xml.match(text); match.hasMatch())
        declarations.append(
            QStringView(text).sliced(match.capturedStart(1), match.capturedLength(1)));
    HtmlTokens tokens(text);
    for (const HtmlToken *token = &tokens.next(); token->kind != HtmlToken::Kind::End;
         token = &tokens.next()) {
        const QStringView charset =
            token->isStart(HtmlTag::Meta) ? declaredCharset(*token) : QStringView();
        if (!charset.isEmpty())
            declarations.append(charset);
    }
    return declarations;
}

} // namespace

PageText inUtf8(const QString &text)
{
    PageText page{{}, {"UTF-8", true}};
    qsizetype from = 0;
    for (const QStringView charset : declarationsOf(text)) {
        const qsizetype at = charset.data() - QStringView(text).data();
        const bool isRight = charset.compare("utf-8"_L1, Qt::CaseInsensitive) == 0;
        page.text += QStringView(text).sliced(from, at - from);
        page.text += isRight ? charset : QStringView(u"utf-8");
        from = at + charset.size();
        page.encoding.mark = false;
    }
    page.text += QStringView(text).sliced(from);
    return page;
}
