#pragma once

#include "controls/tree/TreeMemory.h"

#include <QModelIndex>

class ProjectTreeModel;
class QTreeView;
class TreeFilter;

/// What of the project tree is open and in view; kept over a new reading of its files.
class TreeViewState final
{
public:
    TreeViewState(QTreeView &view, ProjectTreeModel &model, TreeFilter &shown);

    [[nodiscard]] TreeState now() const;
    void expand(const QList<QStringList> &places);
    void scrollTo(int scrolled);
    /// Opens what leads to a match of the filter.
    void expandMatches();
    /// Opens a node (in the model) and everything below it, reading what is needed.
    void expandBelow(const QModelIndex &node);
    [[nodiscard]] QModelIndex firstMatch() const; ///< as shown

private:
    void expandMatches(const QModelIndex &shown);
    void readBelow(const QModelIndex &node);

    QTreeView &m_view;
    ProjectTreeModel &m_model;
    TreeFilter &m_shown;
};
