#pragma once

#include "tools/import/ImportPlan.h"

#include <QDialog>

#include <memory>

class FileSystem;
class ImportPlanModel;
class QSortFilterProxyModel;

namespace Ui {
class AddSourceFilesDialog;
}

/// Shows what an import would do and lets the author decide it: what is taken, and what
/// happens where a name is taken in the book. Accepted with Add.
class AddSourceFilesDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `files` only gives the native form of paths for tool tips.
    AddSourceFilesDialog(FileSystem &files, ImportPlan plan, QWidget *parent = nullptr);
    ~AddSourceFilesDialog() override;

    /// The plan as decided.
    [[nodiscard]] const ImportPlan &plan() const;

private:
    void fitColumns();
    void addRowCommands();
    void checkSelected(bool checked);
    void fillConflictChoice();
    void decideAll();
    void updateTotals();
    void showOmissions();

    std::unique_ptr<Ui::AddSourceFilesDialog> ui;
    ImportPlanModel *m_model;
    QSortFilterProxyModel *m_sorted;
    QString m_nothing; ///< why nothing can be done
};
