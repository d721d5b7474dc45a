#pragma once

#include "controls/parts/CheckedField.h"

#include <QDialog>

/// Asks for one name, which is judged while it is typed. Deletes itself when it closes.
class NameDialog final : public QDialog
{
    Q_OBJECT

public:
    struct Texts
    {
        QString title, label, accept;
        QString name = {}; ///< that it begins with
    };
    /// Does what the name is for. When it says false, the dialog stays with what was typed.
    using Run = std::function<bool(const QString &name)>;

    /// `advice` is shown when there is no problem.
    NameDialog(const Texts &texts, const CheckedField::Rule &problem, Run run, QWidget *parent,
               const CheckedField::Rule &advice = {});

private:
    void accept() override;

    QString m_old;
    Run m_run;
    CheckedField *m_name;
};
