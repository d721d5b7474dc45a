#pragma once

#include "startup/FormWindow.h"

#include <memory>

class ctlBuildTab;

namespace Ui {
class frmBuild;
}

/// The build window: hosts the build control and keeps its caption in step with it. Asks before it
/// closes on what runs.
class frmBuild final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmBuild(Program &program, QWidget *parent = nullptr);
    ~frmBuild() override;

    [[nodiscard]] ctlBuildTab &ctlBuildTab1() const { return *m_ctlBuildTab1; }

Q_SIGNALS:
    /// The author wants to see a place in a page: path relative to the project folder, line or 0.
    void placeRequested(const QString &file, int line);

private:
    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void ctlBuildTab1_evtNext();
    void ctlBuildTab1_evtBack();
    void ctlBuildTab1_evtProcessComplete(bool success);
    void ctlBuildTab1_evtZippingComplete();
    void inHandler(QLatin1StringView handler, QLatin1StringView form,
                   const std::function<void()> &body);

    std::unique_ptr<Ui::frmBuild> ui;
    ctlBuildTab *m_ctlBuildTab1;
};
