#include "controls/books/CategoryList.h"

#include <QSignalBlocker>

CategoryList::CategoryList(QWidget *parent)
    : QListWidget(parent)
{
    setAccessibleName(tr("Categories of the book"));
    setAlternatingRowColors(true);
    connect(this, &QListWidget::itemChanged, this, &CategoryList::changed);
}

void CategoryList::setCategories(const QStringList &available, const QStringList &checked,
                                 const QHash<QString, int> &uses)
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
        const QString &name = m_names.at(row);
        const int books = uses.value(name.toCaseFolded());
        item(row)->setText(books == 0   ? name
                           : books == 1 ? tr("%1 (1 book)").arg(name)
                                        : tr("%1 (%2 books)").arg(name).arg(books));
        item(row)->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        const bool has = checked.contains(name, Qt::CaseInsensitive);
        item(row)->setCheckState(has ? Qt::Checked : Qt::Unchecked);
    }
}

QStringList CategoryList::checked() const
{
    QStringList names;
    for (int row = 0; row < count(); ++row) {
        if (item(row)->checkState() == Qt::Checked)
            names.append(m_names.at(row));
    }
    return names;
}
