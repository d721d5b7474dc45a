#include "tools/HtmlScan.h"

#include "tools/HtmlEntities.h"
#include "tools/HtmlTokens.h"

#include <optional>

using namespace Qt::StringLiterals;
using Kind = PageReference::Kind;

namespace {

struct ReferringAttribute
{
    QLatin1StringView element, attribute;
    Kind kind;
};

constexpr ReferringAttribute referring[]{
    {"a"_L1, "href"_L1, Kind::Link},           {"area"_L1, "href"_L1, Kind::Link},
    {"frame"_L1, "src"_L1, Kind::Link},        {"iframe"_L1, "src"_L1, Kind::Link},
    {"img"_L1, "src"_L1, Kind::Resource},      {"script"_L1, "src"_L1, Kind::Resource},
    {"input"_L1, "src"_L1, Kind::Resource},    {"source"_L1, "src"_L1, Kind::Resource},
    {"audio"_L1, "src"_L1, Kind::Resource},    {"video"_L1, "src"_L1, Kind::Resource},
    {"video"_L1, "poster"_L1, Kind::Resource}, {"track"_L1, "src"_L1, Kind::Resource},
    {"embed"_L1, "src"_L1, Kind::Resource},    {"object"_L1, "data"_L1, Kind::Resource},
    {"image"_L1, "href"_L1, Kind::Resource},   {"image"_L1, "xlink:href"_L1, Kind::Resource},
};

bool isHeading(QStringView name)
{
    return name.size() == 2 && (name[0] == u'h' || name[0] == u'H') && name[1] >= u'1'
           && name[1] <= u'6';
}

/// The value of "charset=" in the content of a meta element.
QStringView charsetIn(QStringView content)
{
    const qsizetype at = content.indexOf("charset="_L1, 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    const QStringView rest = content.sliced(at + 8);
    const qsizetype end = rest.indexOf(u';');
    return (end < 0 ? rest : rest.first(end)).trimmed();
}

/// One word of a list such as rel="alternate stylesheet".
bool holdsWord(QStringView list, QLatin1StringView word)
{
    for (const QStringView candidate : list.tokenize(u' ', Qt::SkipEmptyParts)) {
        if (sameName(candidate, word))
            return true;
    }
    return false;
}

/// Notes what each tag and text says about its page.
class FactFinder final
{
public:
    explicit FactFinder(QStringView page)
        : m_page(page)
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
        m_facts.title = plainText(m_title);
        m_facts.firstHeading = plainText(m_heading);
        return m_facts;
    }

private:
    enum class Inside { Other, Title, Heading, Style };

    void takeText(QStringView text)
    {
        if (m_inside == Inside::Title)
            m_title += text;
        else if (m_inside == Inside::Heading)
            m_heading += text;
        else if (m_inside == Inside::Style)
            m_facts.references += scanCss(text, text.begin() - m_page.begin());
    }

    void takeStart(const HtmlToken &tag)
    {
        if (tag.isTag("title"_L1) && m_title.isEmpty())
            m_inside = Inside::Title;
        else if (tag.isTag("style"_L1))
            m_inside = Inside::Style;
        else if (isHeading(tag.text) && m_heading.trimmed().isEmpty())
            m_inside = Inside::Heading;
        else if (tag.isTag("meta"_L1))
            takeMeta(tag);
        else if (tag.isTag("link"_L1))
            takeLink(tag);
        else if (tag.isTag("base"_L1))
            m_facts.hasBase |= !tag.attribute("href"_L1).isNull();
        takeAttributes(tag);
    }

    void takeEnd(const HtmlToken &tag)
    {
        if (m_inside != Inside::Heading || isHeading(tag.text))
            m_inside = Inside::Other;
    }

    void takeMeta(const HtmlToken &tag)
    {
        if (!m_facts.charset.isEmpty())
            return;
        QStringView charset = tag.attribute("charset"_L1);
        if (charset.isEmpty() && sameName(tag.attribute("http-equiv"_L1), "content-type"_L1))
            charset = charsetIn(tag.attribute("content"_L1));
        m_facts.charset = charset.trimmed().toString();
    }

    void takeLink(const HtmlToken &tag)
    {
        const QStringView rel = tag.attribute("rel"_L1);
        if (holdsWord(rel, "stylesheet"_L1))
            note(Kind::Style, tag.attribute("href"_L1));
        else if (holdsWord(rel, "icon"_L1))
            note(Kind::Resource, tag.attribute("href"_L1));
        else
            note(Kind::Link, tag.attribute("href"_L1));
    }

    void takeAttributes(const HtmlToken &tag)
    {
        for (const HtmlAttribute &attribute : tag.attributes) {
            if (sameName(attribute.name, "style"_L1))
                m_facts.references += scanCss(attribute.value, place(attribute.value));
            else if (sameName(attribute.name, "background"_L1))
                note(Kind::Resource, attribute.value);
            else if (sameName(attribute.name, "srcset"_L1))
                takeSourceSet(attribute.value);
            else if (const auto kind = referenceKind(tag, attribute))
                note(*kind, attribute.value);
        }
    }

    static std::optional<Kind> referenceKind(const HtmlToken &tag, const HtmlAttribute &attribute)
    {
        for (const ReferringAttribute &known : referring) {
            if (tag.isTag(known.element) && sameName(attribute.name, known.attribute)
                && tag.attribute(known.attribute).begin() == attribute.value.begin())
                return known.kind; // a second one of that name does not count
        }
        return std::nullopt;
    }

    /// "small.png 1x, large.png 2x"
    void takeSourceSet(QStringView list)
    {
        for (const QStringView candidate : list.tokenize(u',')) {
            const QStringView entry = candidate.trimmed();
            const qsizetype blank = entry.indexOf(u' ');
            note(Kind::Resource, blank < 0 ? entry : entry.first(blank));
        }
    }

    void note(Kind kind, QStringView value)
    {
        if (!value.isEmpty())
            m_facts.references.append({kind, place(value), value.size()});
    }

    [[nodiscard]] qsizetype place(QStringView view) const { return view.begin() - m_page.begin(); }

    QStringView m_page;
    HtmlFacts m_facts;
    Inside m_inside = Inside::Other;
    QString m_title, m_heading;
};

} // namespace

HtmlFacts scanHtml(QStringView page)
{
    return FactFinder(page).facts();
}
