#pragma once

#include "controls/quicknav/LinkTargets.h"

#include <QDialog>

class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTreeView;

/// Asks for one page, or several, of all pages of all books; a filter finds them by title, book and
/// file.
class PageChooser final : public QDialog
{
    Q_OBJECT

public:
    enum class Choose { One, Several };

    PageChooser(const QString &title, const QList<ListedPage> &pages, Choose choose,
                QWidget *parent = nullptr);

    [[nodiscard]] QList<ListedPage> chosen() const; ///< in the order of the list

private:
    void layOut(Choose choose);
    void fill();
    bool eventFilter(QObject *watched, QEvent *event) override;

    QList<ListedPage> m_pages;
    QSortFilterProxyModel *m_shown;
    QLineEdit *txtFilter;
    QTreeView *tvwPages;
    QPushButton *cmdChoose = nullptr;
};
