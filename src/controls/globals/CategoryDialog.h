#pragma once

#include <QDialog>

#include <functional>

class CheckedField;
class QLineEdit;
class QPushButton;

/// Asks for the name of a category, and for its description where there is one.
class CategoryDialog final : public QDialog
{
    Q_OBJECT

public:
    /// What one dialog is about.
    struct Task
    {
        QString title;      ///< of the window, and what the button says
        QString button;     ///< with its mnemonic
        QStringList others; ///< names that are taken
        QString name = {}, description = {};
        bool hasDescription = true;
    };
    /// `run` does it, with name and description; when it raises, the dialog stays.
    using Run = std::function<bool(const QString &name, const QString &description)>;
    CategoryDialog(Task task, Run run, QWidget *parent = nullptr);

private:
    void layOut();
    void judge();
    void accept() override;

    Task m_task;
    Run m_run;
    CheckedField *txtName;
    QLineEdit *txtDescription;
    QPushButton *cmdOk;
};
