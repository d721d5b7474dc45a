#pragma once

#include "indexmanager/LinkRepair.h"
#include "startup/Program.h"

#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;
class RowTable;

/// Repair after moves: where the missing pages lie now, and after a look at the list the new places
/// in the link files.
class RepairPage final : public QWidget
{
    Q_OBJECT

public:
    explicit RepairPage(Program &program, QWidget *parent = nullptr);

    /// What was found before is of the past then.
    void setIndex(std::shared_ptr<const IdentifierIndex> index);

Q_SIGNALS:
    void changed(); ///< link files were written

private:
    [[nodiscard]] QWidget *makeButtons();
    [[nodiscard]] QPushButton *addButton(QWidget *row, const QString &text, const QString &name,
                                         void (RepairPage::*clicked)());
    void findMoved();
    void showMoved(const QStringList &problems);
    void tickAll() { tick(true); }
    void tickNone() { tick(false); }
    void tick(bool ticked);
    void enableCommands();
    [[nodiscard]] QList<MovedTarget> ticked() const;
    void apply();

    Program &m_program;
    std::shared_ptr<const IdentifierIndex> m_index;
    QList<MovedTarget> m_moved; ///< as the table has them
    RowTable *m_table;
    QLabel *m_state;
    QPushButton *m_tickAll = nullptr;
    QPushButton *m_tickNone = nullptr;
    QPushButton *m_apply = nullptr;
};
