#pragma once

#include "startup/FormWindow.h"

#include <memory>

namespace Ui {
class frmSelPrjType;
}

/// The project launcher: the first window, and the one every Back button returns to.
class frmSelPrjType final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmSelPrjType(Program &program, QWidget *parent = nullptr);
    ~frmSelPrjType() override;

    /// Comes back from another form: captions loaded, frame visible, window shown.
    void loadform();

private:
    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void cmdAddNewProject_Click();
    void cmdContinueProject_Click();
    void cmdMergeProjects_Click();
    void cmdDeleteProject_Click();
    void cmdRankbookset_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

    [[nodiscard]] QAbstractButton *cancelButton() const override;

    bool readPaths();
    void tidyDocs();
    void loadCaptions();
    void showPictures();
    void leaveFor(Form form);
    void inHandler(QLatin1StringView handler, const std::function<void()> &body);

    std::unique_ptr<Ui::frmSelPrjType> ui;
    bool mbQuietClose = false;
};
