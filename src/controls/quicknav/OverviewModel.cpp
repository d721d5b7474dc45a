#include "controls/quicknav/OverviewModel.h"

#include "controls/quicknav/ProblemLook.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

OverviewModel::OverviewModel(QuickNavContents &contents, QObject *parent)
    : QAbstractTableModel(parent)
    , m_contents(contents)
{
}

void OverviewModel::rebuild()
{
    beginResetModel();
    m_columns.clear();
    m_columnOf.clear();
    m_rows.clear();
    const QuickNav &nav = m_contents.nav();
    for (const QString &name : nav.categories)
        addColumn(name);
    for (const QuickNavNode &view : nav.views) // all names first: they are the columns
        for (const QuickNavNode &group : view.children)
            for (const QuickNavNode &topic : group.children)
                for (const QuickNavNode &category : topic.children)
                    addColumn(category.name);
    for (const QuickNavNode &view : nav.views)
        addRows(view, 0, {});
    endResetModel();
}

void OverviewModel::addColumn(const QString &name)
{
    const QString key = name.toCaseFolded();
    if (m_columnOf.contains(key))
        return;
    m_columnOf.insert(key, m_columns.size());
    m_columns.append(name);
}

void OverviewModel::addRows(const QuickNavNode &node, int level, const QStringList &above)
{
    const QStringList names = above + QStringList{node.name};
    const bool topic = level + 1 == QuickNavTree::categoryLevel;
    if (topic || node.children.isEmpty()) {
        Row row{{level, node.id}, names, QList<Cell>(m_columns.size())};
        if (topic)
            fillCells(row, node);
        m_rows.append(row);
        return;
    }
    for (const QuickNavNode &child : node.children)
        addRows(child, level + 1, names);
}

void OverviewModel::fillCells(Row &row, const QuickNavNode &topic) const
{
    for (const QuickNavNode &category : topic.children) {
        Cell &cell = row.cells[m_columnOf.value(category.name.toCaseFolded())];
        const QuickNavContents::Tally tally =
            m_contents.tallyOf({QuickNavTree::categoryLevel, category.id});
        cell.category = category.id;
        cell.links += tally.links;
        cell.dead += tally.dead;
    }
}

const OverviewModel::Cell &OverviewModel::cell(const QModelIndex &index) const
{
    return m_rows.at(index.row()).cells.at(index.column());
}

QuickNavRef OverviewModel::node(int row) const
{
    return m_rows.at(row).node;
}

bool OverviewModel::isTopic(int row) const
{
    return m_rows.at(row).node.level + 1 == QuickNavTree::categoryLevel;
}

QString OverviewModel::rowName(int row) const
{
    return m_rows.at(row).names.join(u" \u203A "_s);
}

bool OverviewModel::hasGaps(int row) const
{
    const QList<Cell> &cells = m_rows.at(row).cells;
    return std::any_of(cells.cbegin(), cells.cend(),
                       [](const Cell &cell) { return cell.links == 0; });
}

bool OverviewModel::hasDead(int row) const
{
    const QList<Cell> &cells = m_rows.at(row).cells;
    return std::any_of(cells.cbegin(), cells.cend(),
                       [](const Cell &cell) { return cell.dead > 0; });
}

int OverviewModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int OverviewModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QString OverviewModel::inWords(const QModelIndex &index) const
{
    const Cell &at = cell(index);
    QString state = QuickNavTree::linkCount(at.links);
    if (!isTopic(index.row()))
        state = tr("no topics");
    else if (at.category.isEmpty())
        state = tr("no such category");
    else if (at.dead > 0)
        state = tr("%1, %2 of them dead").arg(state).arg(at.dead);
    return tr("%1, %2: %3").arg(rowName(index.row()), columnName(index.column()), state);
}

QVariant OverviewModel::look(const QModelIndex &index, int role) const
{
    const Cell &at = cell(index);
    const QPalette palette = QGuiApplication::palette();
    if (role == Qt::BackgroundRole && at.category.isEmpty())
        return QBrush(palette.color(QPalette::Mid),
                      isTopic(index.row()) ? Qt::BDiagPattern : Qt::Dense6Pattern);
    if (role == Qt::BackgroundRole && at.links == 0)
        return palette.brush(QPalette::AlternateBase);
    if (role == Qt::ForegroundRole && at.dead > 0)
        return problemColour(palette);
    return {};
}

QVariant OverviewModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Cell &at = cell(index);
    switch (role) {
    case Qt::DisplayRole:
        if (at.category.isEmpty())
            return QString();
        return at.dead == 0 ? QString::number(at.links)
                            : u"%1  \u26A0 %2"_s.arg(at.links).arg(at.dead);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return inWords(index);
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignCenter);
    default:
        return look(index, role);
    }
}

QVariant OverviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool known =
        section >= 0 && section < (orientation == Qt::Horizontal ? columnCount() : rowCount());
    if (!known)
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole)
        return orientation == Qt::Horizontal ? columnName(section) : rowName(section);
    if (role == Qt::TextAlignmentRole && orientation == Qt::Vertical)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}
