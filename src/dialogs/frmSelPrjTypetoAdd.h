#pragma once

#include "dialogs/LegacyMigration.h"
#include "dialogs/ProjectCreation.h"
#include "resources/Texts.h"
#include "startup/FormWindow.h"

#include <memory>

namespace Ui {
class frmSelPrjTypetoAdd;
}

/// The new project wizard: an empty project, a copy of one, or the migration of a legacy book set.
class frmSelPrjTypetoAdd final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmSelPrjTypetoAdd(Program &program, QWidget *parent = nullptr);
    ~frmSelPrjTypetoAdd() override;

private:
    enum Kind { AddNew, Copy, Migrate };

    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void optSelPrjTypetoAdd_Click(int index);
    void cmdBrowseDBtoMigrate_Click();
    void cmdContinue_Click();
    void cmdBack_Click();
    void cmdCancelSelPrjTypetoAdd_Click();
    void cmdHelpSelPrjTypetoAdd_Click();

    void UpdateClExProjectInfo();
    QStringList GetProdQVSelection_Complete();
    static QString GetLangID(const QString &language);

    [[nodiscard]] QAbstractButton *cancelButton() const override;

    void loadCaptions();
    void connectControls();
    void enableFor(int kind);
    bool takeNames();
    bool takeSource();
    bool require(bool fulfilled, const Message &refusal, QWidget *box);
    void createProject();
    bool makeNew();
    void migrate(const QString &database);
    void showReport(const QString &database);
    void finishMigration();
    LegacyMigration::Runner withProgress(const QString &caption);
    void openMainWindow();
    void closeQuietly();
    void inContinue(const std::function<void()> &body);
    void inHandler(QLatin1StringView handler, const std::function<void()> &body);
    void inProcedureOf(QLatin1StringView tag, const std::function<void()> &body);

    std::unique_ptr<Ui::frmSelPrjTypetoAdd> ui;
    ProjectCreation m_creation;
    LegacyMigration m_migration;
    QString m_typedName; ///< checked and trimmed
    bool mbQuietClose = false;
};
