#pragma once

#include "catalogue/ProjectCatalogue.h"
#include "resources/Texts.h"
#include "startup/FormWindow.h"

#include <memory>

class QComboBox;

namespace Ui {
class frmContinueDeleteProject;
}

/// Continues a project in the main window, or deletes one: two halves of one window.
class frmContinueDeleteProject final : public FormWindow
{
    Q_OBJECT

public:
    enum class Half { Continue, Delete };

    explicit frmContinueDeleteProject(Program &program, QWidget *parent = nullptr);
    ~frmContinueDeleteProject() override;

    /// Brings a half to the front, with the focus in its list and its button as the default one.
    /// Both halves are filled on load and stay as they are.
    void showHalf(Half half);

private:
    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void cmdSelPrjtoContinue_Click();
    void cmdReopen_Click();
    void cmdContinueDelPrj_Click();
    void cmdCancelContinueDelPrj_Click();
    void cmdHelpContinueDelPrj_Click();
    void cmdBack_Click();

    void UpdateEXProjectInfo();
    void UpdateDlExProjectInfo();
    QStringList GetProdQVSelection_Incomplete();

    [[nodiscard]] QAbstractButton *cancelButton() const override;

    void connectControls();
    QString chosenIn(const QComboBox *list);
    Answer ask(Text question, Buttons buttons, const QString &details);
    void deleteProject(const QString &name, bool alsoFiles);
    [[nodiscard]] bool mayTakeFilesOf(const QString &name);
    void takeOutOfLists(const QString &name);
    void showReopen();
    void closeQuietly();
    void inHandler(QLatin1StringView handler, const std::function<void()> &body);
    void inProcedureOf(QLatin1StringView procedure, const std::function<void()> &body);

    std::unique_ptr<Ui::frmContinueDeleteProject> ui;
    QList<CatalogueEntry> m_released; ///< the sets that can be reopened
    bool mbQuietClose = false;
};
