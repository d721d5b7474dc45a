#pragma once

#include "controls/tree/ProjectMime.h"

#include <QModelIndexList>

class ProjectSession;
class ProjectTreeModel;
class QMimeData;

/// A place between or on the rows of the project tree, as the views say it.
struct TreePlace
{
    QModelIndex parent;
    int row = -1; ///< before this child; -1: on the parent itself
};

/// Nodes as they are dragged or put on the clipboard, in the order of the tree. Nodes that lie
/// below another of them go with that one; nodes of another kind than the first stay behind.
DraggedNodes draggedNodes(const ProjectTreeModel &model, QModelIndexList indexes,
                          const QString &projectFolder);

/// What dropping `data` there asks for; nothing when it does not belong there, or stays as it is.
std::optional<ProjectRequest> droppedOn(const ProjectTreeModel &model, ProjectSession &session,
                                        const QMimeData *data, const TreePlace &place);
/// The same for pasting at a node: behind it among its siblings, else into it. Nodes that were
/// copied, not cut, only become links.
std::optional<ProjectRequest> pastedAt(const ProjectTreeModel &model, ProjectSession &session,
                                       const QMimeData *data, const QModelIndex &node);
