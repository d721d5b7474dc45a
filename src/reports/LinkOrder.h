#pragma once

#include "reports/LinkEntries.h"
#include "reports/RowOrder.h"

#include <QStringList>

/// The columns of the link list.
enum class LinkColumn { Status, LinkID, Address };

/// Links of a listing by their index, in the order in which they are shown or written.
using LinkOrder = RowOrder;

/// All links as they were listed.
LinkOrder allLinks(const LinkEntries &links);

/// All links in the natural order of one column, without regard to case; BAD comes before OK. Links
/// that are equal stay as listed. Throws Unwinding when Stop was pressed.
LinkOrder sortedLinks(const LinkEntries &links, LinkColumn column, Qt::SortOrder order,
                      const Progress &progress = {});

/// Which links are shown.
class LinkFilter final
{
public:
    enum class Which { All, Good, Bad };

    LinkFilter() = default;
    /// `words` are separated by blanks; each must stand in the identifier or in the address, in any
    /// letter case.
    LinkFilter(const QString &words, Which which);

    [[nodiscard]] bool passesAll() const;
    [[nodiscard]] bool passes(const LinkEntries &links, qsizetype index) const;

private:
    QStringList m_words;
    Which m_which = Which::All;
};
