#pragma once

#include "tools/PageMove.h"

#include <QDialog>

class QVBoxLayout;
class RowTable;

/// Shows which links change when files move, problems first, and asks whether they shall.
class LinkChangesDialog final : public QDialog
{
    Q_OBJECT

public:
    enum Choice { Cancelled = QDialog::Rejected, ChangeLinks = QDialog::Accepted, FilesOnly };

    /// `what` is the command ("Rename page start.htm"), `moving` says whether it is called
    /// *move* rather than *rename*.
    LinkChangesDialog(const PageMove &move, const QString &what, bool moving,
                      QWidget *parent = nullptr);

private:
    void layOut(const PageMove &move, const QString &what);
    void addButtons(QVBoxLayout *layout, const PageMove &move, bool moving);

    RowTable *m_table;
};
