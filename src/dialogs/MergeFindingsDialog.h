#pragma once

#include "dialogs/merge/MergeLog.h"

#include <QDialog>

class QTableWidget;

/// The list at the end of a merge: what was renamed, left out, or wants the author's eye.
class MergeFindingsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `nativeLogPath` is the log's path in this machine's own form.
    MergeFindingsDialog(const MergeResult &result, const QString &nativeLogPath,
                        QWidget *parent = nullptr);

private:
    bool eventFilter(QObject *watched, QEvent *event) override; // Ctrl+C in the table
    void cmdCopy_Click();

    void fill(const QList<MergeFinding> &findings);
    void fitColumns();
    [[nodiscard]] QWidget *buttons();
    [[nodiscard]] QString line(int row) const;

    QTableWidget *m_table;
};
