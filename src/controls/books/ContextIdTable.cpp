#include "controls/books/ContextIdTable.h"

#include "controls/books/CheckedDelegate.h"
#include "controls/books/PageRules.h"
#include "controls/parts/ListCommands.h"
#include "tools/PageNames.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

ContextIdTable::ContextIdTable(Others others, QWidget *parent)
    : QWidget(parent)
    , m_others(std::move(others))
    , tvwContextIds(new QTreeWidget(this))
    , cmdAdd(new QPushButton(tr("&New id"), this))
    , cmdRemove(new QPushButton(tr("Remo&ve"), this))
    , m_says(new QLabel(this))
{
    layOut();
    connectTable();
    say({});
}

void ContextIdTable::layOut()
{
    tvwContextIds->setObjectName(u"tvwContextIds"_s);
    tvwContextIds->setAccessibleName(tr("Context ids of the page"));
    tvwContextIds->setHeaderLabels({tr("Symbolic name"), tr("Number")});
    tvwContextIds->setRootIsDecorated(false);
    tvwContextIds->setEditTriggers(QTreeWidget::EditKeyPressed | QTreeWidget::DoubleClicked);
    tvwContextIds->header()->resizeSection(NameColumn, 30 * fontMetrics().averageCharWidth());
    cmdAdd->setObjectName(u"cmdAddContextId"_s);
    cmdRemove->setObjectName(u"cmdRemoveContextId"_s);
    m_says->setObjectName(u"lblContextSays"_s);
    m_says->setTextFormat(Qt::PlainText);
    m_says->setWordWrap(true);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(tvwContextIds, 0, 0, 3, 1);
    layout->addWidget(cmdAdd, 0, 1);
    layout->addWidget(cmdRemove, 1, 1);
    layout->setRowStretch(2, 1);
    layout->addWidget(m_says, 3, 0, 1, 2);
}

void ContextIdTable::connectTable()
{
    auto *cells = new CheckedDelegate(
        u"txtContextId"_s, tr("Context id"),
        [this](const QModelIndex &cell, const QString &text) { return problemOf(cell, text); },
        Qt::DisplayRole, this);
    tvwContextIds->setItemDelegate(cells);
    connect(cells, &CheckedDelegate::judged, this, &ContextIdTable::say);
    connect(
        cells, &CheckedDelegate::entered, this,
        [this](const QString &row, int column, const QString &text) {
            enter(row.toInt(), column, text);
        },
        Qt::QueuedConnection);
    connect(cmdAdd, &QPushButton::clicked, this, &ContextIdTable::add);
    connect(cmdRemove, &QPushButton::clicked, this, &ContextIdTable::remove);
    addListAction(tvwContextIds, tr("Add"), "add"_L1, Qt::Key_Insert, [this] { add(); });
    addListAction(tvwContextIds, tr("Edit"), "edit"_L1, Qt::Key_F2,
                  [this] { tvwContextIds->edit(tvwContextIds->currentIndex()); });
    addListAction(tvwContextIds, tr("Remove"), "delete"_L1, QKeySequence::Delete,
                  [this] { remove(); });
    tvwContextIds->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(tvwContextIds, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem *item) { cmdRemove->setEnabled(item != nullptr); });
}

void ContextIdTable::setIds(const QList<ContextId> &ids, const QString &title)
{
    m_title = title;
    const int row = tvwContextIds->indexOfTopLevelItem(tvwContextIds->currentItem());
    const bool wasAdded = ids.size() == m_ids.size() + 1;
    m_ids = ids;
    tvwContextIds->clear();
    for (int i = 0; i < ids.size(); ++i) {
        auto *item = new QTreeWidgetItem(tvwContextIds, {ids.at(i).name, ids.at(i).number});
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setData(NameColumn, Qt::UserRole, QString::number(i));
    }
    const int last = static_cast<int>(ids.size()) - 1;
    tvwContextIds->setCurrentItem(tvwContextIds->topLevelItem(wasAdded ? last : qMin(row, last)));
    cmdRemove->setEnabled(tvwContextIds->currentItem() != nullptr);
}

// A useful entry at once; the author changes what does not fit.
void ContextIdTable::add()
{
    const QList<ContextId> taken = m_others() + m_ids;
    Q_EMIT changed(m_ids + QList{ContextId{freeName(taken), PageRules::nextContextNumber(taken)}});
    tvwContextIds->setFocus();
}

QString ContextIdTable::freeName(const QList<ContextId> &taken) const
{
    const QString wanted = u"IDH_"_s + plainName(m_title).replace(u'-', u'_').toUpper();
    QString name = wanted;
    for (int number = 2; !PageRules::contextNameProblem(name, taken).isEmpty(); ++number)
        name = u"%1_%2"_s.arg(wanted).arg(number);
    return name;
}

void ContextIdTable::remove()
{
    const int row = tvwContextIds->indexOfTopLevelItem(tvwContextIds->currentItem());
    if (row >= 0)
        Q_EMIT changed(allBut(row));
}

QList<ContextId> ContextIdTable::allBut(int row) const
{
    QList<ContextId> ids = m_ids;
    ids.removeAt(row);
    return ids;
}

QString ContextIdTable::problemOf(const QModelIndex &cell, const QString &text) const
{
    const QList<ContextId> others = m_others() + allBut(cell.row());
    return cell.column() == NameColumn ? PageRules::contextNameProblem(text, others)
                                       : PageRules::contextNumberProblem(text, others);
}

void ContextIdTable::enter(int row, int column, const QString &text)
{
    if (row >= m_ids.size())
        return;
    QList<ContextId> ids = m_ids;
    if (column == NameColumn)
        ids[row].name = text;
    else
        ids[row].number = QString::number(text.toULongLong());
    Q_EMIT changed(ids);
}

void ContextIdTable::say(const QString &problem)
{
    m_says->setText(problem.isEmpty() ? QString() : u"\u26A0 "_s + problem);
    m_says->setVisible(!problem.isEmpty());
}
