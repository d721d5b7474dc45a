#pragma once

#include <QDialog>

#include <functional>

class CheckedField;
class QPushButton;

/// Asks for the new name of a file.
class RenameFileDialog final : public QDialog
{
    Q_OBJECT

public:
    using Rule = std::function<QString(const QString &)>; ///< the problem, "" for none
    /// `run` does it; when it says false, the dialog stays.
    using Run = std::function<bool(const QString &name)>;
    RenameFileDialog(const QString &name, Rule problem, Run run, QWidget *parent = nullptr);

private:
    void accept() override;

    Run m_run;
    CheckedField *txtName;
    QPushButton *cmdOk;
};
