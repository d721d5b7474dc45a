#pragma once

#include <QDialog>

class CompareModel;
class QBoxLayout;
class QLabel;
class QTableView;

/// Two versions of a page side by side: what another author saved, and what is being edited. The
/// answer is `result()`: Accepted for theirs, Kept for mine, Rejected to decide later.
class CompareDialog final : public QDialog
{
    Q_OBJECT

public:
    static constexpr int Kept = 2;

    CompareDialog(const QString &title, const QString &theirs, const QString &mine,
                  QWidget *parent = nullptr);

private:
    void makeTable();
    void layOut();
    QBoxLayout *stepRow();
    QWidget *answers();
    void go(int direction);

    CompareModel *m_model;
    QTableView *m_table;
    QLabel *m_count;
};
