#pragma once

#include "viewer/ViewerPlace.h"
#include "viewer/ViewerWorld.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;
class SearchQuery;

/// Searching a built set while the reader types; the best pages come first.
class SearchTab final : public QWidget
{
    Q_OBJECT

public:
    explicit SearchTab(ViewerWorld &world, QWidget *parent = nullptr);
    ~SearchTab() override;

    /// Offers the sets as they were last read and forgets what was read of them.
    void reload();
    /// Searches this set from now on, if there is such a one.
    void chooseSet(const QString &set);

Q_SIGNALS:
    /// A hit was chosen; `asked` is what led to it, as `searchMarks` takes it.
    void hitChosen(const ViewerPlace &place, const QStringList &asked);

private:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void forget();
    void readAhead();
    void search();
    void showHits(const QString &question);
    void choose(const QTreeWidgetItem *hit);
    void enter();
    [[nodiscard]] SearchQuery &query();

    ViewerWorld &m_world;
    QComboBox *cboSet;
    QLineEdit *txtSearch;
    QLabel *lblHits;
    QTreeWidget *lstHits;
    std::unique_ptr<SearchQuery> m_query; ///< over the chosen set; null until it is asked
    QTimer m_ahead;                       ///< reads a file in each pause, while the tab is seen
    QStringList m_asked;                  ///< what the hits answer: the question, and synonyms
};
