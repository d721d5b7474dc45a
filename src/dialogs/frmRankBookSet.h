#pragma once

#include "startup/FormWindow.h"

#include <QPersistentModelIndex>

#include <memory>

class RankModel;

namespace Ui {
class frmRankBookSet;
}

/// The ranking dialog: every project of the catalogue with its rank, which is edited in place.
/// Only Apply stores the ranks.
class frmRankBookSet final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmRankBookSet(Program &program, QWidget *parent = nullptr);
    ~frmRankBookSet() override;

    /// Fills the grid from the catalogue; an open edit is dropped. Raises QvError when the
    /// catalogue cannot be read; the grid then stays as it was.
    void UpdateFlexGrid();

    /// A rank from 1 to 32000 comes back without leading blanks and zeros, an empty text as it is.
    /// Any other gives "500", and the author is told so.
    QString ValidateRank(const QString &text);

private:
    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdBack_Click();
    void fgdBooksetRank_SelChange();
    bool fgdBooksetRank_KeyDown(QKeyEvent &event); // the filters: true keeps the event away
    bool fgdBooksetRank_MouseDown(const QObject *pressed);
    void fgdBooksetRank_Scroll();
    bool txtRankHolder_KeyDown(QKeyEvent &event);
    void txtRankHolder_LostFocus(Qt::FocusReason reason);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    void connectControls();
    void watchGrid();
    void layOutGrid();
    void arrange();
    bool commitEdit();
    void hideEditor();
    void placeEditor();
    void returnToLauncher();
    void inHandler(QLatin1StringView handler, const std::function<void()> &body);

    std::unique_ptr<Ui::frmRankBookSet> ui;
    RankModel *m_model = nullptr;
    QPersistentModelIndex m_edited; ///< the cell that the editor covers, if any
    bool mbQuietClose = false;
};
