#pragma once

#include "tools/build/ScannedPages.h"

#include <QSet>

#include <string_view>
#include <unordered_map>

/// The pages of a project and their places that links can mean, for many look-ups.
class PageAnchors final
{
public:
    explicit PageAnchors(const ScannedPages &pages);

    /// The page at a place of the listing; null when it is no page, or could not be read.
    [[nodiscard]] const ScannedPage *page(quint32 file) const;
    /// Whether a link to `anchor` (decoded, without "#") finds its place there. Letter case counts;
    /// "" and "top" are always there.
    [[nodiscard]] bool has(quint32 file, std::string_view anchor) const;

private:
    std::unordered_map<quint32, const ScannedPage *> m_pages;
    QSet<quint64> m_anchors; ///< of file and name
};
