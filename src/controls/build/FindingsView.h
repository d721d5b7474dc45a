#pragma once

#include "controls/build/FindingsModel.h"

#include <QWidget>

#include <functional>

class BackgroundWork;
class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTreeView;
struct Program;

/// What the last quality checks of a project found: a table with a filter, and below it what the
/// current finding means. The author accepts findings, takes that back, and switches kinds of
/// findings off; all of it at once in the project's baseline.
class FindingsView final : public QWidget
{
    Q_OBJECT

public:
    explicit FindingsView(Program &program, QWidget *parent = nullptr);
    ~FindingsView() override;

    /// The project by the name of its folder; "" for none. `refresh` shows its findings.
    void setProject(const QString &name);
    /// Reads the report again, in the background.
    void refresh();

Q_SIGNALS:
    /// The author wants to see a place: file relative to the project folder, with backslashes; line
    /// 0 is the file as a whole.
    void opened(const QString &file, int line);

private:
    QWidget *makeFilters();
    QWidget *makeButtons();
    void makeTable();
    void take(QaReport report);
    void sayProblem(const QString &problem);
    void filter();
    void judged();
    void showCurrent();
    void openCurrent();
    void accept();
    void takeOut();
    void switchOff();
    void chooseKinds();
    void changeBaseline(const std::function<void(Baseline &)> &change);
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QList<Finding> chosen(bool known) const;
    [[nodiscard]] const QaFinding *current() const;

    Program &m_program;
    QString m_project;
    FindingsModel *m_model;
    BackgroundWork *m_reading;
    QTreeView *lstFindings;
    QLineEdit *txtFindingsFilter;
    QComboBox *cboSeverity, *cboState;
    QLabel *lblFindings;
    QPlainTextEdit *txtFinding;
    QPushButton *cmdFindingKinds = nullptr;
    QAction *m_open = nullptr, *m_accept = nullptr, *m_takeOut = nullptr, *m_switchOff = nullptr;
};
