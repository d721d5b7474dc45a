#include "controls/quicknav/QuickNavRequests.h"

#include "controls/parts/Handler.h"
#include "controls/quicknav/NodeNameDialog.h"

#include <QApplication>
#include <QWidget>

using namespace Qt::StringLiterals;

QuickNavRequests::QuickNavRequests(QuickNavEditing &editing, QWidget &editor)
    : QObject(&editor)
    , m_editing(editing)
    , m_editor(editor)
{
    connect(&editing.contents().session(), &ProjectSession::requested, this,
            &QuickNavRequests::handle);
}

void QuickNavRequests::handle(const ProjectRequest &request)
{
    const bool isLink = request.action == ProjectRequest::Action::AddLink;
    if (!isLink && request.node.kind != ProjectRequest::Node::Kind::QuickNav)
        return;
    m_editing.contents().refresh();
    if (isLink)
        return addLinks(request);
    for (const ProjectRequest::Node &asked : QList{request.node} + request.others) {
        if (const auto node = nodeOf(asked))
            handleNode(request, *node);
    }
}

std::optional<QuickNavRef> QuickNavRequests::nodeOf(const ProjectRequest::Node &node)
{
    QStringList path = node.path;
    path.removeAll(QString());
    const QuickNav &nav = m_editing.contents().nav();
    const QuickNavRef meant{static_cast<int>(path.size()) - 1, node.page};
    if (!node.page.isEmpty() && QuickNavTree::namesTo(nav, meant) == path)
        return meant;
    const auto found = QuickNavTree::byNames(nav, path);
    if (!found)
        Q_EMIT m_editing.contents().session().done(
            tr("%1 is no longer there.").arg(path.join(u" > "_s)));
    return found;
}

void QuickNavRequests::handleNode(const ProjectRequest &request, const QuickNavRef &node)
{
    using Action = ProjectRequest::Action;
    if (request.action == Action::New && node.level < QuickNavTree::categoryLevel)
        return NodeNameDialog::forNew(m_editing, node, window())->open();
    if (node.level < 0) // nothing else can be done to the quick navigation as a whole
        return;
    switch (request.action) {
    case Action::Rename:
        return NodeNameDialog::forOld(m_editing, node, window())->open();
    case Action::Delete:
        return m_editing.remove(node);
    case Action::MoveUp:
        return m_editing.moveBy(node, -1);
    case Action::MoveDown:
        return m_editing.moveBy(node, 1);
    case Action::MoveTo:
        return moveTo(request, node);
    default:
        return;
    }
}

void QuickNavRequests::moveTo(const ProjectRequest &request, const QuickNavRef &node)
{
    const auto target = request.target ? nodeOf(*request.target) : std::nullopt;
    if (target)
        m_editing.moveTo(node, *target, request.place);
}

void QuickNavRequests::addLinks(const ProjectRequest &request)
{
    const auto category = request.target ? nodeOf(*request.target) : std::nullopt;
    if (!category)
        return;
    ProjectSession &session = m_editing.contents().session();
    QList<QuickNavLink> links;
    for (const ProjectRequest::Node &page : QList{request.node} + request.others) {
        if (!page.book || page.page.isEmpty())
            continue;
        QuickNavLink link{page.book->acronym, page.page, {}, {}};
        link.title = m_editing.contents().targetOf(link).page;
        links.append(link);
    }
    if (links.isEmpty())
        Q_EMIT session.done(tr("Only pages of books can be linked here."));
    else
        m_editing.addLinks(*category, links, request.place);
}

// The tree keeps the author's eyes while the editor lies behind another one.
QWidget *QuickNavRequests::window() const
{
    return m_editor.isVisible() ? &m_editor : QApplication::activeWindow();
}
