#pragma once

#include <QString>
#include <QStringList>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

// Small tables with their buttons and the label of what is wrong, as the editors have them.

/// A flat table whose column `stretched` takes the room that the others leave.
QTreeWidget *makeTable(const QString &objectName, const QString &accessibleName,
                       const QStringList &columns, int stretched, QWidget *parent);
/// A row that says its own tool tip where its text is cut off.
QTreeWidgetItem *addRow(QTreeWidget *table, const QStringList &texts,
                        const QString &accessibleText);
/// Makes the row with that text in its first column the current one; false when there is none.
bool chooseRow(QTreeWidget *table, const QString &text);
/// The first column of the current row; "" when there is none.
QString chosenRow(const QTreeWidget *table);

/// A label for a problem, hidden until there is one.
QLabel *makeProblemLabel(const QString &objectName, QWidget *parent);
void sayProblem(QLabel *label, const QString &problem);

QPushButton *makeButton(const QString &objectName, QLatin1StringView iconName, const QString &text,
                        QWidget *parent);
/// A button with a picture only.
QPushButton *makeIconButton(const QString &objectName, QLatin1StringView iconName,
                            const QString &accessibleName, QWidget *parent);
