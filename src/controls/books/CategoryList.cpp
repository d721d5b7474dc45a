#include "controls/books/CategoryList.h"

#include <QSignalBlocker>

CategoryList::CategoryList(QWidget *parent)
    : QListWidget(parent)
{
    setAccessibleName(tr("Categories of the book"));
    setAlternatingRowColors(true);
    connect(this, &QListWidget::itemChanged, this, &CategoryList::changed);
}

void CategoryList::setCategories(const QStringList &available, const QStringList &checked)
{
    const QSignalBlocker quiet(this);
    QStringList names = available;
    for (const QString &name : checked) {
        if (!names.contains(name, Qt::CaseInsensitive))
            names.append(name);
    }
    // The same names keep their rows, and with them the author's place in the list.
    if (names != m_names) {
        clear();
        addItems(names);
        m_names = names;
    }
    for (int row = 0; row < count(); ++row) {
        item(row)->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        const bool has = checked.contains(item(row)->text(), Qt::CaseInsensitive);
        item(row)->setCheckState(has ? Qt::Checked : Qt::Unchecked);
    }
}

QStringList CategoryList::checked() const
{
    QStringList names;
    for (int row = 0; row < count(); ++row) {
        if (item(row)->checkState() == Qt::Checked)
            names.append(item(row)->text());
    }
    return names;
}
