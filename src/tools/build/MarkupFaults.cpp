#include "tools/build/MarkupFaults.h"

#include <algorithm>

namespace {

/// No page that anybody writes is deeper; beyond it open elements are not followed any more.
constexpr int deepest = 4096;
constexpr size_t manyIds = 10'000;

bool has(HtmlTag tag, quint16 trait)
{
    return (htmlTraits(tag) & trait) != 0;
}

bool isTablePart(HtmlTag tag)
{
    switch (tag) {
    case HtmlTag::Table:
    case HtmlTag::Caption:
    case HtmlTag::Colgroup:
    case HtmlTag::Tbody:
    case HtmlTag::Thead:
    case HtmlTag::Tfoot:
    case HtmlTag::Tr:
    case HtmlTag::Td:
    case HtmlTag::Th:
        return true;
    default:
        return false;
    }
}

bool isRowGroup(HtmlTag tag)
{
    return tag == HtmlTag::Tbody || tag == HtmlTag::Thead || tag == HtmlTag::Tfoot;
}

bool isRuby(HtmlTag tag)
{
    return tag == HtmlTag::Rb || tag == HtmlTag::Rp || tag == HtmlTag::Rt || tag == HtmlTag::Rtc;
}

/// Whether the start tag of `start` ends an element that was left open.
bool ends(HtmlTag start, HtmlTag open)
{
    switch (open) {
    case HtmlTag::P:
        return has(start, HtmlTrait::EndsParagraph);
    case HtmlTag::Li:
        return start == HtmlTag::Li;
    case HtmlTag::Dt:
    case HtmlTag::Dd:
        return start == HtmlTag::Dt || start == HtmlTag::Dd;
    case HtmlTag::Option:
        return start == HtmlTag::Option || start == HtmlTag::Optgroup;
    case HtmlTag::Optgroup:
        return start == HtmlTag::Optgroup;
    case HtmlTag::Td:
    case HtmlTag::Th:
        return start == HtmlTag::Td || start == HtmlTag::Th || start == HtmlTag::Tr
               || isRowGroup(start);
    case HtmlTag::Tr:
        return start == HtmlTag::Tr || isRowGroup(start);
    case HtmlTag::Tbody:
    case HtmlTag::Thead:
    case HtmlTag::Tfoot:
        return isRowGroup(start);
    case HtmlTag::Caption:
    case HtmlTag::Colgroup:
        return start == HtmlTag::Colgroup || start == HtmlTag::Tr || isRowGroup(start);
    case HtmlTag::Head:
        return start == HtmlTag::Body || start == HtmlTag::Frameset;
    default:
        return isRuby(open) && isRuby(start);
    }
}

} // namespace

void MarkupFaults::begin()
{
    m_open.clear();
    m_last.fill(-1);
    m_reported.fill(0);
    m_scope = m_table = -1;
    m_isXhtml = m_tooDeep = false;
    m_found.clear();
    if (m_ids.bucket_count() > manyIds) // to clear them all for every page takes longer
        m_ids = {};
    else
        m_ids.clear();
}

void MarkupFaults::note(PageFault fault, qsizetype at, std::string_view detail)
{
    m_found.push_back({fault, at, detail});
}

void MarkupFaults::takeId(std::string_view id, qsizetype at)
{
    if (!m_ids.insert(id).second)
        note(PageFault::DoubleId, at, id);
}

void MarkupFaults::takeStart(const PageToken &tag)
{
    if (tag.tag == HtmlTag::Html && !tag.attribute(htmlKey("xmlns")).empty())
        m_isXhtml = true;
    if (m_tooDeep || has(tag.tag, HtmlTrait::Void))
        return;
    const bool isForeign = m_last[size_t(HtmlTag::Svg)] >= 0 || m_last[size_t(HtmlTag::Math)] >= 0;
    const bool mayClose = m_isXhtml || isForeign || tag.tag == HtmlTag::Other
                          || tag.tag == HtmlTag::Svg || tag.tag == HtmlTag::Math;
    if (!isForeign)
        closeImplied(tag.tag);
    if (!tag.selfClosing || !mayClose)
        push(tag);
}

void MarkupFaults::push(const PageToken &tag)
{
    if (size() >= deepest) {
        note(PageFault::Unclosed, m_open.back().at, m_open.back().name);
        m_open.clear();
        m_tooDeep = true;
        return;
    }
    int &last = m_last[size_t(tag.tag)];
    m_open.push_back({tag.tag, tag.text, tag.start, last, m_scope, m_table});
    last = size() - 1;
    if (has(tag.tag, HtmlTrait::Scope))
        m_scope = last;
    if (has(tag.tag, HtmlTrait::TableScope))
        m_table = last;
}

void MarkupFaults::pop()
{
    const Open &top = m_open.back();
    m_last[size_t(top.tag)] = top.sameBelow;
    m_scope = top.scopeBelow;
    m_table = top.tableBelow;
    m_open.pop_back();
}

/// Takes everything away from that place on; what needed an end tag and had none is noted.
void MarkupFaults::popTo(int place, bool isClosed)
{
    while (size() > place) {
        const Open &top = m_open.back();
        const bool isLast = size() == place + 1;
        if (!has(top.tag, HtmlTrait::OptionalEnd) && !(isLast && isClosed)) {
            note(PageFault::Unclosed, top.at, top.name);
            ++m_reported[size_t(top.tag)];
        }
        pop();
    }
}

void MarkupFaults::closeImplied(HtmlTag start)
{
    int end = -1;
    for (int place = size() - 1;
         place >= 0 && has(m_open[size_t(place)].tag, HtmlTrait::OptionalEnd); --place) {
        if (ends(start, m_open[size_t(place)].tag))
            end = place;
    }
    if (end >= 0)
        popTo(end, true);
}

void MarkupFaults::takeEnd(const PageToken &tag)
{
    if (m_tooDeep || tag.tag == HtmlTag::Html || tag.tag == HtmlTag::Body)
        return; // what comes behind them still belongs to the page
    if (const int place = openPlace(tag); place >= 0) {
        popTo(place, true);
        return;
    }
    int &reported = m_reported[size_t(tag.tag)];
    if (reported > 0)
        --reported;
    else if (!has(tag.tag, HtmlTrait::OptionalStart))
        note(PageFault::StrayEnd, tag.start, tag.text);
}

/// The element that an end tag closes; -1 when none of that name can be reached.
int MarkupFaults::openPlace(const PageToken &tag) const
{
    const int place = tag.tag == HtmlTag::Other ? otherPlace(tag.text) : m_last[size_t(tag.tag)];
    return place >= (isTablePart(tag.tag) ? m_table : m_scope) ? place : -1;
}

int MarkupFaults::otherPlace(std::string_view name) const
{
    constexpr int patience = 64;
    int place = m_last[size_t(HtmlTag::Other)];
    for (int looked = 0; place >= 0 && looked < patience; ++looked) {
        if (sameName(m_open[size_t(place)].name, name))
            return place;
        place = m_open[size_t(place)].sameBelow;
    }
    return -1;
}

const std::vector<MarkupFaults::Found> &MarkupFaults::finish()
{
    popTo(0, false);
    std::stable_sort(m_found.begin(), m_found.end(),
                     [](const Found &a, const Found &b) { return a.at < b.at; });
    return m_found;
}
