#include "tools/build/PageAnchors.h"

#include <QHashFunctions>

#include <algorithm>

namespace {

quint64 keyOf(quint32 file, std::string_view anchor)
{
    return qHashBits(anchor.data(), anchor.size(), file);
}

bool meansTop(std::string_view anchor)
{
    constexpr std::string_view top = "top";
    return anchor.size() == top.size()
           && std::equal(anchor.begin(), anchor.end(), top.begin(),
                         [](char a, char b) { return (a | 0x20) == b; });
}

} // namespace

PageAnchors::PageAnchors(const ScannedPages &pages)
{
    size_t count = 0;
    for (const ScannedPage &page : pages.pages())
        count += page.facts.anchors.size();
    m_anchors.reserve(static_cast<qsizetype>(count));
    m_pages.reserve(pages.pages().size());
    for (const ScannedPage &page : pages.pages()) {
        if (page.isStyleSheet || !page.problem.isEmpty())
            continue;
        m_pages.emplace(page.file, &page);
        for (const PageAnchor &anchor : page.facts.anchors)
            m_anchors.insert(keyOf(page.file, page.facts.of(anchor.name)));
    }
}

const ScannedPage *PageAnchors::page(quint32 file) const
{
    const auto found = m_pages.find(file);
    return found == m_pages.end() ? nullptr : found->second;
}

bool PageAnchors::has(quint32 file, std::string_view anchor) const
{
    return anchor.empty() || m_anchors.contains(keyOf(file, anchor)) || meansTop(anchor);
}
