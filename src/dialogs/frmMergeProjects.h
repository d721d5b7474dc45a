#pragma once

#include "resources/Texts.h"
#include "startup/FormWindow.h"

#include <QStringList>

#include <memory>

class QListWidget;
struct MergeRequest;
struct MergeResult;

namespace Ui {
class frmMergeProjects;
}

/// The merge dialog: picks two or more catalogued projects and joins them in a new one.
class frmMergeProjects final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmMergeProjects(Program &program, QWidget *parent = nullptr);
    ~frmMergeProjects() override;

private:
    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void cmdAddMerge_Click();
    void cmdRemove_Click();
    void cmdMergeContinue_Click();
    void cmdMergeBack_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();
    void lstAvaProjects_Click();
    void lstProjectsToMerge_Click();
    void SortlstAvaProjects();

    [[nodiscard]] QAbstractButton *cancelButton() const override;
    bool eventFilter(QObject *watched, QEvent *event) override; // Enter and Delete in the lists

    void loadCaptions();
    void connectControls();
    void fillAvailable();
    [[nodiscard]] bool takeNames(MergeRequest &request);
    [[nodiscard]] bool require(bool fulfilled, Text refusal, QWidget *box);
    void merge(const MergeRequest &request);
    void showFindings(const MergeResult &result);
    void listAgain(const MergeRequest &request);
    void openMerged();
    void openMainWindow();
    void closeQuietly();
    void inHandler(QLatin1StringView handler, const std::function<void()> &body);

    std::unique_ptr<Ui::frmMergeProjects> ui;
    bool mbQuietClose = false;
};
