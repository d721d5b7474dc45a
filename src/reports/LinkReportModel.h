#pragma once

#include "reports/LinkOrder.h"
#include "reports/LongListModel.h"

#include <QIcon>

class FileSystem;

/// The link list.
class LinkReportModel final : public LongListModel
{
    Q_OBJECT

public:
    explicit LinkReportModel(FileSystem &files, QObject *parent = nullptr);

    /// Shows other links, `order` being all of them; the filter stays.
    void setLinks(LinkEntries links, RowOrder order);
    void setFilter(const LinkFilter &filter);

    [[nodiscard]] bool isFiltered() const override { return !m_filter.passesAll(); }
    [[nodiscard]] const LinkEntries &links() const { return m_links; }
    [[nodiscard]] QString address(int row) const { return m_links.address(numberAt(row)); }
    /// The machine's form of a row's address; the product's when it has none.
    [[nodiscard]] QString nativeAddress(int row) const;
    /// Status, identifier and address, separated by tabs.
    [[nodiscard]] QString line(int row) const;

    QVariant data(const QModelIndex &index, int role) const override;

private:
    [[nodiscard]] bool passes(quint32 link) const override;
    [[nodiscard]] QString shownText(quint32 link, int column) const;
    [[nodiscard]] QString toolTip(int row, int column) const;

    FileSystem &m_files;
    LinkEntries m_links;
    LinkFilter m_filter;
    QIcon m_good;
    QIcon m_bad;
};
