#pragma once

#include "dialogs/merge/MergeLog.h"

#include <QDialog>

class ListTable;

/// The list at the end of a merge: what was renamed, left out, or wants the author's eye.
class MergeFindingsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `nativeLogPath` is the log's path in this machine's own form.
    MergeFindingsDialog(const MergeResult &result, const QString &nativeLogPath,
                        QWidget *parent = nullptr);

private:
    void cmdCopy_Click();

    void fill(const QList<MergeFinding> &findings);
    [[nodiscard]] QWidget *buttons();

    ListTable *m_table;
};
