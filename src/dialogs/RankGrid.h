#pragma once

#include <QTableView>

#include <array>

/// Two columns that share the width of the grid; the first one is fixed and looks like a header.
/// Boxes lie over the two header cells and follow them.
class RankGrid final : public QTableView
{
    Q_OBJECT

public:
    explicit RankGrid(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    void coverHeader(QWidget *first, QWidget *second);

Q_SIGNALS:
    void arranged(); ///< cells have moved or have another size

private:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void shareWidth();
    void arrange();

    std::array<QWidget *, 2> m_boxes{};
    double m_share = 0.7; ///< the first column's part of the width; authors may drag it
    bool m_sharing = false;
};
