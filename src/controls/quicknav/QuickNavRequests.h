#pragma once

#include "controls/quicknav/QuickNavEditing.h"
#include "controls/session/ProjectRequest.h"

class QWidget;

/// Does what the author asks for at the quick-navigation nodes of the project tree, and links pages
/// of the tree into categories.
class QuickNavRequests final : public QObject
{
    Q_OBJECT

public:
    QuickNavRequests(QuickNavEditing &editing, QWidget &editor);

private:
    void handle(const ProjectRequest &request);
    void handleNode(const ProjectRequest &request, const QuickNavRef &node);
    void addLinks(const ProjectRequest &request);
    void askNewName(const QuickNavRef &parent);
    void askOtherName(const QuickNavRef &node);
    void moveTo(const ProjectRequest &request, const QuickNavRef &node);
    [[nodiscard]] std::optional<QuickNavRef> nodeOf(const ProjectRequest::Node &node);
    [[nodiscard]] QWidget *window() const;

    QuickNavEditing &m_editing;
    QWidget &m_editor;
};
