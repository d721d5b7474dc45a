#pragma once

#include "indexmanager/SetScan.h"
#include "reports/IdentifierIndex.h"
#include "startup/Program.h"

#include <QHash>
#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;
class RowTable;
struct TableRow;

/// The sets, which of their link files are older than their pages, and the linking tool for those.
class SetsPage final : public QWidget
{
    Q_OBJECT

public:
    explicit SetsPage(Program &program, QWidget *parent = nullptr);

    void setIndex(std::shared_ptr<const IdentifierIndex> index);
    /// Looks through the sets, unless that was done since `setIndex`.
    void lookOnce();

Q_SIGNALS:
    void changed(); ///< link files were written

private:
    [[nodiscard]] QWidget *makeButtons();
    [[nodiscard]] QList<SetScan> scansOf(const Progress &progress) const;
    void showSets(const QList<SetScan> &scans);
    [[nodiscard]] QString summaryOf(const QList<TableRow> &rows) const;
    [[nodiscard]] TableRow rowOf(const SetLinks &links, const SetScan &scan) const;
    [[nodiscard]] QString whatToSay(const SetLinks &links, const SetScan &scan) const;
    void selectStale();
    void enableCommands();
    void scanSelected();
    void scan(const QStringList &sets, const Progress &progress);
    void noteReport(const QString &set, const ToolReport &report);

    Program &m_program;
    std::shared_ptr<const IdentifierIndex> m_index;
    bool m_isLookedAt = false;
    QList<int> m_stale;                ///< rows
    QHash<QString, QString> m_results; ///< of scans, by set
    RowTable *m_table;
    QLabel *m_state;
    QPushButton *m_selectStale;
    QPushButton *m_scan;
};
