#include "tools/build/PageScan.h"

#include "tools/html/CssScan.h"
#include "tools/html/HtmlEntities.h"

#include <algorithm>
#include <functional>

using Kind = PageReference::Kind;

void PageScan::takeReferences(const PageToken &tag)
{
    for (const auto &found : m_references.of(tag))
        note(found.kind, found.value);
}

/// What links can mean, and what is published.
void PageScan::takeNames(const PageToken &tag)
{
    const bool isLink = tag.tag == HtmlTag::A;
    TextSpan id, name;
    bool hasId = false, hasName = false;
    std::string_view published;
    for (const auto &attribute : tag.attributes) {
        const std::string_view value = attribute.value;
        if (attribute.key == htmlKey("id") && !hasId) {
            hasId = true;
            id = addDecoded(value);
            if (!value.empty())
                m_facts.anchors.push_back({id, lineAt(placeOf(value)), true});
            if (!value.empty() && m_context.faults)
                m_markup.takeId(value, placeOf(value));
        } else if (isLink && attribute.key == htmlKey("name") && !hasName) {
            hasName = true;
            name = addDecoded(value);
            if (!value.empty())
                m_facts.anchors.push_back({name, lineAt(placeOf(value)), false});
        } else if (isLink && attribute.key == htmlKey("data-qv-ibd") && published.empty()) {
            published = value;
        }
    }
    if (!published.empty())
        m_facts.linkIds.push_back(
            {addDecoded(published), lineAt(placeOf(published)), id.length > 0 ? id : name});
}

/// Its address also holds for the references before it.
void PageScan::takeBase(const PageToken &tag)
{
    const std::string_view address = tag.attribute(htmlKey("href"));
    if (m_facts.hasBase || address.data() == nullptr)
        return;
    m_facts.hasBase = true;
    std::string decoded;
    appendWithoutEntities(decoded, address, ReferenceIn::Attribute);
    m_resolver.setBase(decoded);
    for (PageRef &reference : m_facts.refs)
        resolve(reference);
}

void PageScan::note(Kind kind, std::string_view value)
{
    PageRef reference;
    reference.kind = kind;
    reference.line = lineAt(placeOf(value));
    reference.written = addDecoded(value);
    resolve(reference);
    m_facts.refs.push_back(reference);
    if (m_context.faults)
        noteMarker(m_facts.of(reference.written), value);
}

void PageScan::resolve(PageRef &reference)
{
    const std::string_view written = m_facts.of(reference.written);
    const ResolvedReference resolved = m_resolver.resolve(written);
    reference.place = resolved.place;
    reference.target = resolved.target;
    const std::less_equal<> upTo;
    const char *const anchor = resolved.anchor.data();
    const bool isPart = upTo(written.data(), anchor)
                        && upTo(anchor + resolved.anchor.size(), written.data() + written.size());
    if (isPart)
        reference.anchor = {static_cast<quint32>(anchor - m_facts.text.data()),
                            static_cast<quint32>(resolved.anchor.size())};
    else
        reference.anchor = add(resolved.anchor);
}

/// `css` is a piece of the page.
void PageScan::noteStyle(std::string_view css)
{
    const QList<PageReference> found = scanCss(css);
    for (const PageReference &reference : found)
        note(reference.kind, css.substr(size_t(reference.start), size_t(reference.length)));
}

qsizetype PageScan::placeOf(std::string_view piece) const
{
    return piece.data() - m_page.data();
}

/// Fast for places that follow each other.
quint32 PageScan::lineAt(qsizetype place)
{
    const char *const from = m_page.data() + std::min(m_linePlace, place);
    const char *const to = m_page.data() + std::max(m_linePlace, place);
    const auto lines = static_cast<quint32>(std::count(from, to, '\n'));
    m_line = place >= m_linePlace ? m_line + lines : m_line - lines;
    m_linePlace = place;
    return m_line;
}

TextSpan PageScan::add(std::string_view text)
{
    const auto start = static_cast<quint32>(m_facts.text.size());
    m_facts.text += text;
    return {start, static_cast<quint32>(text.size())};
}

TextSpan PageScan::addDecoded(std::string_view html)
{
    const auto start = static_cast<quint32>(m_facts.text.size());
    appendWithoutEntities(m_facts.text, html, ReferenceIn::Attribute);
    return {start, static_cast<quint32>(m_facts.text.size()) - start};
}
