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

/// The address in the content of a meta refresh: "5; url=next.htm".
QStringView refreshTarget(QStringView content)
{
    const qsizetype at = content.indexOf("url="_L1, 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    QStringView address = content.sliced(at + 4).trimmed();
    for (const QChar quote : {u'"', u'\''}) {
        if (address.size() > 1 && address.front() == quote && address.back() == quote)
            address = address.sliced(1, address.size() - 2);
    }
    return address;
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
        if (tag.isTag("title"_L1) && m_title.isEmpty())
            enter(Inside::Title);
        else if (tag.isTag("style"_L1))
            enter(Inside::Style);
        else if (isHeading(tag.text))
            startHeading(tag.text[1]);
        else if (tag.isTag("meta"_L1))
            takeMeta(tag);
        else if (tag.isTag("link"_L1))
            takeLink(tag);
        else if (tag.isTag("base"_L1))
            takeBase(tag.attribute("href"_L1));
        takeAttributes(tag);
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
        const bool isLink = tag.isTag("a"_L1);
        for (const HtmlAttribute &attribute : tag.attributes) {
            if (!attribute.value.isEmpty()
                && (sameName(attribute.name, "id"_L1)
                    || (isLink && sameName(attribute.name, "name"_L1))))
                m_facts.anchors.append(withoutEntities(attribute.value));
        }
        if (isLink) {
            endLink();
            m_link = referenceAt(tag.attribute("href"_L1));
        } else if (m_link >= 0 && tag.isTag("img"_L1)) {
            m_linkText += u' ' + tag.attribute("alt"_L1).toString() + u' ';
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

    void startHeading(QChar level)
    {
        endHeading();
        m_listed = m_all && level <= u'3';
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
        else if (isHeading(tag.text))
            endHeading();
        if (m_link >= 0 && tag.isTag("a"_L1))
            endLink();
    }

    void takeMeta(const HtmlToken &tag)
    {
        if (m_all && sameName(tag.attribute("http-equiv"_L1), "refresh"_L1))
            note(Kind::Link, refreshTarget(tag.attribute("content"_L1)));
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

    static constexpr qsizetype longestText = 400;

    QStringView m_page;
    bool m_all;
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
