#pragma once

#include "controls/session/ProjectRequest.h"

#include <QLatin1StringView>
#include <QList>
#include <QString>

class QMimeData;

/// Whether two nodes are one and the same.
bool isSameNode(const ProjectRequest::Node &a, const ProjectRequest::Node &b);

/// What the project tree puts on the clipboard and drags: nodes of one project, all of one kind.
inline constexpr QLatin1StringView projectMimeType{"application/x-qv-project-nodes"};

struct DraggedNode
{
    ProjectRequest::Node node;
    QString path;  ///< of a page or global page, relative to the project folder; may be ""
    QString title; ///< as the tree shows it
};

struct DraggedNodes
{
    QString projectFolder; ///< full path; with another one they are none of the open project's
    bool cut = false;      ///< from the clipboard: to be moved, not to be linked
    QList<DraggedNode> nodes;

    /// Whether these are pages of books of the project whose folder this is.
    [[nodiscard]] bool arePagesOf(const QString &folder) const;
};

void putNodes(QMimeData &mime, const DraggedNodes &nodes);
/// Empty when there are none. Of a book only acronym, name and folder come with a node: look it up
/// in the session (`identityOf`). Data of another program's making is checked, never trusted.
DraggedNodes nodesIn(const QMimeData *mime);
