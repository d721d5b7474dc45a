#pragma once

#include "reports/LinkOrder.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QTimer>

class FileSystem;

/// The link list, made for very many rows: nothing is kept per row but its place in the order, and
/// the rows are looked through a piece at a time only while there is a filter.
/// A new order or filter resets the model, at once for short lists.
class LinkReportModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LinkReportModel(FileSystem &files, QObject *parent = nullptr);

    /// Shows other links, `order` being all of them; the filter stays.
    void setLinks(LinkEntries links, LinkOrder order);
    void setOrder(LinkOrder order);
    void setFilter(const LinkFilter &filter);
    /// Looks through the rest of a long list at once.
    void finishFilter();

    [[nodiscard]] const LinkEntries &links() const { return m_links; }
    [[nodiscard]] const LinkOrder &shown() const { return m_shown; }
    [[nodiscard]] bool isFiltered() const { return !m_filter.passesAll(); }
    [[nodiscard]] QString address(int row) const { return m_links.address(m_shown[indexOf(row)]); }
    /// The machine's form of a row's address; the product's when it has none.
    [[nodiscard]] QString nativeAddress(int row) const;
    /// Status, identifier and address, separated by tabs.
    [[nodiscard]] QString line(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    static std::size_t indexOf(int row) { return static_cast<std::size_t>(row); }
    [[nodiscard]] QString shownText(quint32 link, int column) const;
    [[nodiscard]] QString toolTip(int row, int column) const;
    void startFilter();
    void filterOn();

    FileSystem &m_files;
    LinkEntries m_links;
    LinkOrder m_order; ///< all links
    LinkOrder m_shown; ///< those that pass the filter
    LinkFilter m_filter;
    LinkOrder m_passed;     ///< so far, while the filter is at work
    std::size_t m_next = 0; ///< where in m_order it goes on
    QTimer m_turn;          ///< runs while it is at work
    QIcon m_good;
    QIcon m_bad;
};
