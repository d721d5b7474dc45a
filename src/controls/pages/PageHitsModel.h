#pragma once

#include "tools/PageSearch.h"

#include <QAbstractTableModel>
#include <QSet>

/// The hits of a search over pages, one row each, and what would take their place. Hits of pages
/// that can be changed have a check mark then.
class PageHitsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Page, Line, Text, After, ColumnCount };

    explicit PageHitsModel(QObject *parent = nullptr);

    /// Empties it. `replacing`: there is a column with what takes the place.
    void start(bool replacing);
    void add(const QList<FoundPage> &pages);

    [[nodiscard]] qsizetype hitCount() const { return m_hits; }
    [[nodiscard]] qsizetype pageCount() const { return m_pages.size(); }
    [[nodiscard]] qsizetype checkedCount() const;
    [[nodiscard]] Qt::CheckState checksOfAll() const; ///< of all hits that can be checked
    void checkAll(bool checked);
    /// The page of a row, and its hit: null in the row of a page that cannot be searched.
    [[nodiscard]] const FoundPage &page(int row) const;
    [[nodiscard]] const PageHit *hit(int row) const;
    /// Pages with checked hits, and whether one is checked.
    [[nodiscard]] QList<FoundPage> checkedPages() const;
    [[nodiscard]] bool isChecked(const QString &path, qsizetype hit) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

Q_SIGNALS:
    void checksChanged();

private:
    struct Row
    {
        qsizetype page = 0;
        qsizetype hit = -1;
        bool checked = false;
    };
    [[nodiscard]] bool canReplace(const Row &row) const;
    [[nodiscard]] QString text(const Row &row, int column) const;
    [[nodiscard]] QString after(const Row &row) const;
    [[nodiscard]] QVariant place(const Row &row, int column, int role) const;

    QList<FoundPage> m_pages;
    QList<Row> m_rows;
    QHash<QString, qsizetype> m_firstRows; ///< by page
    qsizetype m_hits = 0;
    bool m_replacing = false;
};
