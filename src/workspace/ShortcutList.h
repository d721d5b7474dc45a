#pragma once

#include <QDialog>

class QLineEdit;
class QTreeWidget;

/// The keys of the main window and its editors, by the place where they work, with a filter.
class ShortcutList final : public QDialog
{
    Q_OBJECT

public:
    explicit ShortcutList(QWidget *parent = nullptr);

private:
    void fill();
    void filter(const QString &text);

    QLineEdit *txtFilter;
    QTreeWidget *tvwKeys;
};
