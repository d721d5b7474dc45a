#include "tools/html/HtmlScan.h"

#include "tools/html/HtmlEntities.h"
#include "tools/html/HtmlTokens.h"
#include "tools/html/TagReferences.h"

using namespace Qt::StringLiterals;
using Kind = PageReference::Kind;

namespace {

bool isHeading(HtmlTag tag)
{
    return tag >= HtmlTag::H1 && tag <= HtmlTag::H6;
}

/// Notes what each tag and text says about its page.
class FactFinder final
{
public:
    FactFinder(QStringView page, HtmlDetail detail)
        : m_page(page)
        , m_all(detail == HtmlDetail::All)
    {
    }

    HtmlFacts facts()
    {
        HtmlTokens tokens(m_page);
        while (true) {
            const HtmlToken &token = tokens.next();
            if (token.kind == HtmlToken::Kind::End)
                break;
            if (token.kind == HtmlToken::Kind::Text)
                takeText(token.text);
            else if (token.kind == HtmlToken::Kind::StartTag)
                takeStart(token);
            else
                takeEnd(token);
        }
        endHeading();
        endLink();
        m_facts.title = plainText(m_title);
        if (m_all)
            m_facts.texts.resize(m_facts.references.size());
        return m_facts;
    }

private:
    enum class Inside { Other, Title, Heading, Style };

    void takeText(QStringView text)
    {
        if (m_link >= 0 && m_linkText.size() < longestText)
            m_linkText += text;
        if (m_inside == Inside::Title)
            m_title += text;
        else if (m_inside == Inside::Heading)
            m_heading += text;
        else if (m_inside == Inside::Style)
            m_facts.references += scanCss(text, text.begin() - m_page.begin());
    }

    void takeStart(const HtmlToken &tag)
    {
        if (tag.tag == HtmlTag::Title && m_title.isEmpty())
            enter(Inside::Title);
        else if (tag.tag == HtmlTag::Style)
            enter(Inside::Style);
        else if (isHeading(tag.tag))
            startHeading(tag.tag);
        else if (tag.tag == HtmlTag::Meta)
            takeMeta(tag);
        else if (tag.tag == HtmlTag::Base)
            takeBase(tag.attribute(htmlKey("href")));
        for (const auto &found : m_references.of(tag))
            note(found.kind, found.value);
        if (m_all)
            takeDetails(tag);
    }

    void takeBase(QStringView address)
    {
        if (!m_facts.hasBase && !address.isNull())
            m_facts.base = {Kind::Link, place(address), address.size()};
        m_facts.hasBase |= !address.isNull();
    }

    void takeDetails(const HtmlToken &tag)
    {
        const bool isLink = tag.tag == HtmlTag::A;
        for (const auto &attribute : tag.attributes) {
            if (!attribute.value.isEmpty()
                && (attribute.key == htmlKey("id") || (isLink && attribute.key == htmlKey("name"))))
                m_facts.anchors.append(withoutEntities(attribute.value));
        }
        if (isLink) {
            endLink();
            m_link = referenceAt(tag.attribute(htmlKey("href")));
        } else if (m_link >= 0 && tag.tag == HtmlTag::Img) {
            m_linkText += u' ' + tag.attribute(htmlKey("alt")).toString() + u' ';
        }
    }

    void endLink()
    {
        if (m_link >= 0) {
            m_facts.texts.resize(m_facts.references.size());
            m_facts.texts[m_link] = plainText(m_linkText);
        }
        m_link = -1;
        m_linkText.clear();
    }

    /// One that was just noted; -1 when it was not.
    [[nodiscard]] qsizetype referenceAt(QStringView value) const
    {
        qsizetype at = m_facts.references.size() - 1;
        while (at >= 0 && m_facts.references[at].start > place(value))
            --at;
        const bool found =
            !value.isEmpty() && at >= 0 && m_facts.references[at].start == place(value);
        return found ? at : -1;
    }

    void enter(Inside place)
    {
        endHeading();
        m_inside = place;
    }

    void startHeading(HtmlTag level)
    {
        endHeading();
        m_listed = m_all && level <= HtmlTag::H3;
        if (m_listed || m_facts.firstHeading.isEmpty())
            m_inside = Inside::Heading;
    }

    void endHeading()
    {
        if (m_inside != Inside::Heading)
            return;
        const QString heading = plainText(m_heading);
        m_heading.clear();
        m_inside = Inside::Other;
        if (m_facts.firstHeading.isEmpty())
            m_facts.firstHeading = heading;
        if (m_listed && !heading.isEmpty())
            m_facts.headings.append(heading);
    }

    void takeEnd(const HtmlToken &tag)
    {
        if (m_inside != Inside::Heading)
            m_inside = Inside::Other;
        else if (isHeading(tag.tag))
            endHeading();
        if (m_link >= 0 && tag.tag == HtmlTag::A)
            endLink();
    }

    void takeMeta(const HtmlToken &tag)
    {
        if (m_all)
            note(Kind::Link, refreshAddress(tag));
        if (m_facts.charset.isEmpty())
            m_facts.charset = declaredCharset(tag).toString();
    }

    void note(Kind kind, QStringView value)
    {
        if (!value.isEmpty())
            m_facts.references.append({kind, place(value), value.size()});
    }

    [[nodiscard]] qsizetype place(QStringView view) const { return view.begin() - m_page.begin(); }

    static constexpr qsizetype longestText = 400;

    QStringView m_page;
    bool m_all;
    TagReferences<QStringView> m_references;
    HtmlFacts m_facts;
    Inside m_inside = Inside::Other;
    bool m_listed = false; ///< the heading at hand
    QString m_title, m_heading, m_linkText;
    qsizetype m_link = -1; ///< place in `references` of the <a> we are in
};

} // namespace

HtmlFacts scanHtml(QStringView page, HtmlDetail detail)
{
    return FactFinder(page, detail).facts();
}
