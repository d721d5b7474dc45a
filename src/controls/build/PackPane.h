#pragma once

#include "controls/build/BackgroundWork.h"
#include "controls/build/BuiltProject.h"
#include "tools/pack/PackProject.h"

#include <QTimer>
#include <QWidget>

class PackItemsModel;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;

/// Packs a project for the server: shows what would go in and what differs from the last pack,
/// packs in the background, and releases the set when the author says so.
class PackPane final : public QWidget
{
    Q_OBJECT

public:
    explicit PackPane(Program &program, QWidget *parent = nullptr);

    /// What would go in is looked at when the pane is seen.
    void setProject(const BuiltProject &project);
    /// The project was edited: compares anew in a moment.
    void noteChange();
    [[nodiscard]] bool isPacking() const { return m_packing.isRunning(); }
    void finish(); ///< stops what runs and waits for it

Q_SIGNALS:
    void busyChanged();

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Planned
    {
        PackPlan plan;
        QString released; ///< the day, as stored
        bool isBuilt = false;
    };

    void layOut();
    void makeList();
    QLayout *optionRow();
    QLayout *packRow();
    void plan();
    void workOut(const BuiltProject &project, const PackOptions &options, const Progress &progress);
    void showPlanned(const Planned &planned);
    void offerRelease(const Planned &planned);
    void offerPacking();
    void pack();
    void showPacked(const PackResult &result);
    void release();
    void endPacking(bool stopped, const QString &problem);
    [[nodiscard]] PackOptions options() const;

    Program &m_program;
    BuiltProject m_project;
    PackItemsModel *m_items;
    QCheckBox *chkSources;
    QCheckBox *chkUnchanged;
    QLabel *lblPlan;
    QLabel *lblWarnings;
    QTableView *lstItems;
    QCheckBox *chkRelease;
    QLabel *lblRelease;
    QProgressBar *prgPack;
    QPushButton *cmdPack;
    QPushButton *cmdStopPack;
    QLabel *lblPacked;
    bool m_isPlanned = false;
    QTimer m_later;            ///< plans when it ends
    BackgroundWork m_planning; ///< last: they use the rest
    BackgroundWork m_packing;
};
