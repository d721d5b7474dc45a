#pragma once

#include "tools/build/PageFacts.h"
#include "tools/html/HtmlTokens.h"

#include <array>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Watches the tags of a page go by and notes what is wrong with them: ids given twice, elements
/// left open, end tags of nothing. End tags that HTML lets authors leave out are not missed. Made
/// to be used again for one page after another.
class MarkupFaults final
{
public:
    struct Found
    {
        PageFault fault;
        qsizetype at; ///< place in the page
        std::string_view detail;
    };

    void begin();
    void takeStart(const PageToken &tag);
    void takeEnd(const PageToken &tag);
    /// An element's id, as written.
    void takeId(std::string_view id, qsizetype at);
    void note(PageFault fault, qsizetype at, std::string_view detail = {});
    /// The page ends: what is open now stays open. In the order of the page.
    const std::vector<Found> &finish();

private:
    struct Open
    {
        HtmlTag tag;
        std::string_view name;
        qsizetype at;
        int sameBelow;  ///< the next lower one of the same tag; -1 for none
        int scopeBelow; ///< the scopes when it was opened
        int tableBelow;
    };

    void push(const PageToken &tag);
    void pop();
    void popTo(int place, bool isClosed);
    void closeImplied(HtmlTag start);
    [[nodiscard]] int openPlace(const PageToken &tag) const;
    [[nodiscard]] int otherPlace(std::string_view name) const;
    [[nodiscard]] int size() const { return static_cast<int>(m_open.size()); }

    std::vector<Open> m_open;
    std::array<int, size_t(HtmlTag::Count)> m_last{};     ///< place of the topmost of each tag
    std::array<int, size_t(HtmlTag::Count)> m_reported{}; ///< whose end tags may still come
    int m_scope = -1;                                     ///< the topmost that bounds a scope
    int m_table = -1;                                     ///< the same for the parts of tables
    bool m_isXhtml = false;
    bool m_tooDeep = false;
    std::unordered_set<std::string_view> m_ids;
    std::vector<Found> m_found;
};
