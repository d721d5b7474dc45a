#pragma once

#include "catalogue/ProjectCatalogue.h"

#include <QDialog>

class QPushButton;
class QTreeWidget;

/// *Reopen a released set*: which of the released sets, shown with their dates, is taken up again.
class ReopenDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit ReopenDialog(const QList<CatalogueEntry> &released, QWidget *parent = nullptr);

    /// The name of the selected set; empty when none is selected.
    [[nodiscard]] QString chosen() const;

private:
    void layOut();
    void fill(const QList<CatalogueEntry> &released);

    QTreeWidget *m_sets;
    QPushButton *m_ok;
};
