#pragma once

#include "controls/quicknav/OverviewModel.h"
#include "controls/quicknav/QuickNavEditing.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QTableView;

/// The overview matrix with its filter: Enter goes to the category of a cell, or makes it.
class OverviewPage final : public QWidget
{
    Q_OBJECT

public:
    explicit OverviewPage(QuickNavEditing &editing, QWidget *parent = nullptr);

    void focusFilter();

Q_SIGNALS:
    void nodeWanted(const QuickNavRef &node); ///< the author goes there

private:
    enum class Show { All, Gaps, Dead };

    void layOut();
    void followContents();
    void applyFilter();
    void activate(const QModelIndex &at);
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    QuickNavEditing &m_editing;
    OverviewModel *m_model;
    QLineEdit *txtFilter;
    QComboBox *cboShow;
    QTableView *tblOverview;
    QLabel *m_says;
    bool m_isOutdated = true;
};
