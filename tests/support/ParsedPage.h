#pragma once

#include <QByteArray>
#include <QStringList>

#include <gumbo.h>

#include <string_view>

/// What an established parser finds in a page, in the order of the page.
class ParsedPage final
{
public:
    explicit ParsedPage(const QByteArray &bytes)
    {
        GumboOutput *const output = gumbo_parse_with_options(
            &kGumboDefaultOptions, bytes.constData(), static_cast<size_t>(bytes.size()));
        visit(output->root);
        gumbo_destroy_output(&kGumboDefaultOptions, output);
        endHeading();
    }

    QStringList links, names, images, headings;
    QString text; ///< without blanks

    /// Without anything that only parts words.
    static QString solid(QString text)
    {
        return text.removeIf([](QChar c) { return c.isSpace(); });
    }

private:
    void visit(const GumboNode *node)
    {
        if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE
            || node->type == GUMBO_NODE_CDATA)
            take(QString::fromUtf8(node->v.text.text));
        if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
            return;
        const GumboElement &element = node->v.element;
        const bool isHtml = element.tag_namespace == GUMBO_NAMESPACE_HTML;
        const auto is = [&](GumboTag tag) { return element.tag == tag; };
        takeAttributes(element);
        if (is(GUMBO_TAG_SCRIPT) || is(GUMBO_TAG_STYLE) || is(GUMBO_TAG_TITLE)
            || is(GUMBO_TAG_TEMPLATE) || is(GUMBO_TAG_IFRAME) || is(GUMBO_TAG_NOFRAMES))
            return;
        const bool isHeading = isHtml && element.tag >= GUMBO_TAG_H1 && element.tag <= GUMBO_TAG_H6;
        if (isHeading)
            endHeading();
        m_inHeading |= isHeading;
        for (unsigned i = 0; i < element.children.length; ++i)
            visit(static_cast<const GumboNode *>(element.children.data[i]));
        if (isHeading)
            endHeading();
    }
    void take(const QString &piece)
    {
        text += solid(piece);
        if (m_inHeading)
            m_heading += piece;
    }
    void endHeading()
    {
        if (m_inHeading && !solid(m_heading).isEmpty())
            headings.append(solid(m_heading));
        m_inHeading = false;
        m_heading.clear();
    }
    void takeAttributes(const GumboElement &element)
    {
        const auto take = [&](QStringList &to, const char *name) {
            const GumboAttribute *found = gumbo_get_attribute(&element.attributes, name);
            if (found != nullptr && *found->value != '\0')
                to.append(QString::fromUtf8(found->value));
        };
        if (element.tag == GUMBO_TAG_A || element.tag == GUMBO_TAG_AREA)
            take(links, "href");
        take(names, "id");
        if (element.tag == GUMBO_TAG_A)
            take(names, "name");
        if (element.tag == GUMBO_TAG_IMG)
            take(images, "src");
    }

    bool m_inHeading = false;
    QString m_heading;
};
