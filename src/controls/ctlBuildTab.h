#pragma once

#include "controls/parts/LateWidget.h"

#include <functional>

class BuildChoice;
class BuildRunPage;
class BuiltProject;
class QPushButton;
class QStackedWidget;
struct Program;

/// The build control: says which of the project's derived data are stale and why, runs the tools
/// that make them, and packs the project. Its content is made when it is shown.
class ctlBuildTab final : public LateWidget
{
    Q_OBJECT

public:
    explicit ctlBuildTab(Program &program, QWidget *parent = nullptr);
    ~ctlBuildTab() override;

    /// Shows the first step for the project; what runs goes on with its own first.
    void setProjectName(const QString &name);
    void setProjectLanguage(const QString &code);
    /// The project was edited: shows its lights anew. What is being built counts as failed then,
    /// for it may not show the edit. `source` says who asks ("MainUI").
    void RefreshStatus(const QString &source);

    /// Asked before a build or packing begins; false keeps the first step.
    void setStartGuard(std::function<bool()> guard) { m_mayStart = std::move(guard); }
    /// Whether something runs that closing would break off.
    [[nodiscard]] bool isBusy() const;
    /// Stops what runs and waits for it.
    void finish();

Q_SIGNALS:
    void evtNext();
    void evtBack();
    void evtProcessComplete(bool success);
    void evtZippingComplete();
    /// The author leaves the first step.
    void closeRequested();
    /// The author wants to see a place in a page: path relative to the project folder, line or 0.
    void placeRequested(const QString &file, int line);

private:
    void layOut() override;
    QLayout *buttonRow();
    void showProject();
    void showStep();
    void next();
    void back();
    void leave();
    [[nodiscard]] bool isAtRun() const;
    [[nodiscard]] BuiltProject project() const;

    Program &m_program;
    QString m_project;
    QString m_language;
    bool m_isLate = false; ///< another project came while something ran
    std::function<bool()> m_mayStart;
    // The content
    QStackedWidget *stkSteps = nullptr;
    BuildChoice *m_choice = nullptr;
    BuildRunPage *m_run = nullptr;
    QPushButton *cmdBack = nullptr;
    QPushButton *cmdNext = nullptr;
    QPushButton *cmdClose = nullptr;
};
