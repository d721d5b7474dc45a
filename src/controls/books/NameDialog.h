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
        QString title, label, accept, name;
    };
    NameDialog(const Texts &texts, const CheckedField::Rule &problem, QWidget *parent);

Q_SIGNALS:
    void entered(const QString &name); ///< another one than it began with

private:
    void accept() override;

    QString m_old;
    CheckedField *m_name;
};
