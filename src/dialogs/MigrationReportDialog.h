#pragma once

#include "components/ConversionReport.h"

#include <QDialog>

class ListTable;
class QPlainTextEdit;

/// What became of a legacy book set: rows of each table against what was taken over, and every
/// problem with its row.
class MigrationReportDialog final : public QDialog
{
    Q_OBJECT

public:
    struct Paths
    {
        QString database, log;
        QString nativeLog; ///< in this machine's own form
    };

    MigrationReportDialog(const ConversionReport &report, const Paths &paths,
                          QWidget *parent = nullptr);

Q_SIGNALS:
    /// The author wants to see the log.
    void logRequested();

private:
    void cmdCopy_Click();
    void showProblem();

    void begin(bool hasProblems);
    void fillCounts(const QList<ConversionCount> &counts);
    void fillProblems(const QList<ConversionProblem> &problems);
    [[nodiscard]] QWidget *namedBy(const QString &caption, QWidget *table);
    [[nodiscard]] QWidget *problemPart(const ConversionReport &report);
    [[nodiscard]] QWidget *buttons();

    QString m_summary;
    ListTable *m_counts;
    ListTable *m_problems;
    QPlainTextEdit *m_problem;
};
