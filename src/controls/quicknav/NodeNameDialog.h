#pragma once

#include "controls/quicknav/QuickNavEditing.h"

#include <QDialog>

class CheckedField;
class QPushButton;

/// Asks for the name of a node, new or old, where it cannot be typed in its row.
class NodeNameDialog final : public QDialog
{
    Q_OBJECT

public:
    static NodeNameDialog *forNew(QuickNavEditing &editing, const QuickNavRef &parent,
                                  QWidget *window);
    static NodeNameDialog *forOld(QuickNavEditing &editing, const QuickNavRef &node,
                                  QWidget *window);

private:
    using Rule = std::function<QString(const QString &)>;
    using Use = std::function<void(const QString &)>;
    NodeNameDialog(const QString &title, const QString &name, const Rule &problem, Use use,
                   QWidget *window);

    CheckedField *m_field;
    QPushButton *cmdName;
};
