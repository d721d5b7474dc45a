#include "controls/parts/Tables.h"

#include "controls/parts/PlainLabel.h"
#include "resources/Icons.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

QTreeWidget *makeTable(const QString &objectName, const QString &accessibleName,
                       const QStringList &columns, int stretched, QWidget *parent)
{
    auto *table = new QTreeWidget(parent);
    table->setObjectName(objectName);
    table->setAccessibleName(accessibleName);
    table->setHeaderLabels(columns);
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->header()->setStretchLastSection(false);
    // A long name leaves room for the columns behind it.
    table->header()->setMaximumSectionSize(table->fontMetrics().averageCharWidth() * 40);
    table->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->header()->setSectionResizeMode(stretched, QHeaderView::Stretch);
    return table;
}

QTreeWidgetItem *addRow(QTreeWidget *table, const QStringList &texts, const QString &accessibleText)
{
    auto *row = new QTreeWidgetItem(table, texts);
    for (int column = 0; column < texts.size(); ++column)
        row->setToolTip(column, texts.at(column));
    row->setData(0, Qt::AccessibleTextRole, accessibleText);
    return row;
}

bool chooseRow(QTreeWidget *table, const QString &text)
{
    const QList<QTreeWidgetItem *> found =
        table->findItems(text, Qt::MatchFixedString | Qt::MatchCaseSensitive, 0);
    if (!text.isEmpty() && !found.isEmpty())
        table->setCurrentItem(found.first());
    return !text.isEmpty() && !found.isEmpty();
}

QString chosenRow(const QTreeWidget *table)
{
    return table->currentItem() == nullptr ? QString() : table->currentItem()->text(0);
}

QLabel *makeProblemLabel(const QString &objectName, QWidget *parent)
{
    QLabel *label = plainLabel({}, parent);
    label->setObjectName(objectName);
    label->hide();
    return label;
}

void sayProblem(QLabel *label, const QString &problem)
{
    label->setText(problem.isEmpty() ? QString() : u"\u26A0 "_s + problem);
    label->setVisible(!problem.isEmpty());
}

QPushButton *makeButton(const QString &objectName, QLatin1StringView iconName, const QString &text,
                        QWidget *parent)
{
    auto *button = new QPushButton(icon(iconName), text, parent);
    button->setObjectName(objectName);
    return button;
}

QPushButton *makeIconButton(const QString &objectName, QLatin1StringView iconName,
                            const QString &accessibleName, QWidget *parent)
{
    QPushButton *button = makeButton(objectName, iconName, {}, parent);
    button->setAccessibleName(accessibleName);
    return button;
}
