#pragma once

#include "controls/build/ProjectBuild.h"

#include <QWidget>

#include <chrono>

class BuildLog;
class FindingsView;
class PackPane;
class QLabel;
class QProgressBar;
class QPushButton;
class QTabWidget;
class SearchPane;
class StageTable;

/// The second step of a build: how it runs and what came out, and what can be done then: look at
/// the findings, pack, try a search.
class BuildRunPage final : public QWidget
{
    Q_OBJECT

public:
    explicit BuildRunPage(Program &program, QWidget *parent = nullptr);

    /// Runs what is ordered; when that is nothing, goes straight to packing.
    void begin(const BuiltProject &project, const BuildOrder &order);
    void noteChange();                 ///< the project was edited
    [[nodiscard]] bool isBusy() const; ///< builds or packs
    [[nodiscard]] bool isPacking() const;
    void finish(); ///< stops what runs and waits for it

Q_SIGNALS:
    void busyChanged();
    void buildEnded(bool success);
    /// The author wants to see a place in a page: path relative to the project folder, line or 0.
    void placeRequested(const QString &file, int line);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void enterTab();
    QLayout *progressRow();
    QLayout *stateRow();
    void addTabs();
    void connectBuild();
    void run(const BuildOrder &order);
    void showRunning(bool running);
    void offerResults(bool offered);
    void stop();
    void showProgress(int done, int total, const QString &what);
    void showElapsed();
    void end(const BuildEnd &end);

    Program &m_program;
    BuiltProject m_project;
    QLabel *lblOutcome;
    StageTable *m_stages;
    QProgressBar *prgOverall;
    QPushButton *cmdStop;
    QLabel *lblWhat;
    QLabel *lblCounts;
    QLabel *lblElapsed;
    QTabWidget *tabResults;
    BuildLog *m_log;
    FindingsView *m_findings;
    PackPane *m_pack;
    SearchPane *m_search;
    std::chrono::milliseconds m_begun{0};
    ProjectBuild *m_build;
};
