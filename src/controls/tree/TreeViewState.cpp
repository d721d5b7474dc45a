#include "controls/tree/TreeViewState.h"

#include "controls/tree/ProjectTreeModel.h"
#include "controls/tree/TreeFilter.h"

#include <QScrollBar>
#include <QTreeView>

TreeViewState::TreeViewState(QTreeView &view, ProjectTreeModel &model, TreeFilter &shown)
    : m_view(view)
    , m_model(model)
    , m_shown(shown)
{
}

TreeState TreeViewState::now() const
{
    TreeState state;
    QModelIndexList waiting{QModelIndex()};
    while (!waiting.isEmpty()) {
        const QModelIndex parent = waiting.takeLast();
        for (int row = 0; row < m_shown.rowCount(parent); ++row) {
            const QModelIndex child = m_shown.index(row, 0, parent);
            if (!m_view.isExpanded(child) || !m_shown.hasChildren(child))
                continue;
            state.expanded.append(m_model.place(m_shown.mapToSource(child)));
            waiting.append(child);
        }
    }
    const QModelIndex current = m_shown.mapToSource(m_view.currentIndex());
    if (current.isValid())
        state.chosen = m_model.place(current);
    state.scrolled = m_view.verticalScrollBar()->value();
    return state;
}

void TreeViewState::expand(const QList<QStringList> &places)
{
    for (const QStringList &place : places) {
        const QModelIndex node = m_model.find(place);
        if (node.isValid())
            m_view.expand(m_shown.mapFromSource(node));
    }
}

void TreeViewState::scrollTo(int scrolled)
{
    m_view.doItemsLayout(); // before it the bar does not know how far it goes
    m_view.verticalScrollBar()->setValue(scrolled);
}

void TreeViewState::expandMatches()
{
    expandMatches(QModelIndex());
}

void TreeViewState::expandMatches(const QModelIndex &shown)
{
    for (int row = 0; row < m_shown.rowCount(shown); ++row) {
        const QModelIndex child = m_shown.index(row, 0, shown);
        if (!m_model.leadsToMatch(m_shown.mapToSource(child)))
            continue;
        m_view.expand(child);
        expandMatches(child);
    }
}

void TreeViewState::expandBelow(const QModelIndex &node)
{
    readBelow(node);
    m_view.expandRecursively(m_shown.mapFromSource(node));
}

void TreeViewState::readBelow(const QModelIndex &node)
{
    m_model.fetchMore(node);
    for (int row = 0; row < m_model.rowCount(node); ++row)
        readBelow(m_model.index(row, 0, node));
}

QModelIndex TreeViewState::firstMatch() const
{
    QModelIndex at;
    for (int row = 0; row < m_shown.rowCount(at); ++row) {
        const QModelIndex child = m_shown.index(row, 0, at);
        if (!m_model.leadsToMatch(m_shown.mapToSource(child)))
            continue;
        at = child;
        row = -1;
    }
    // Below the last node that leads on, the first row that is shown matches.
    return at.isValid() ? m_shown.index(0, 0, at) : at;
}
