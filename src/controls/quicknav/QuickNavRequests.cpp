#include "controls/quicknav/QuickNavRequests.h"

#include "controls/parts/Handler.h"
#include "controls/parts/NameDialog.h"

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
        return askNewName(node);
    if (node.level < 0) // nothing else can be done to the quick navigation as a whole
        return;
    switch (request.action) {
    case Action::Rename:
        return askOtherName(node);
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

void QuickNavRequests::askNewName(const QuickNavRef &parent)
{
    const auto problem = [this, parent](const QString &name) {
        return m_editing.newNameProblem(parent, name);
    };
    const auto add = [this, parent](const QString &name) {
        m_editing.add(parent, name);
        return true;
    };
    const QString title = tr("New %1").arg(QuickNavTree::word(parent.level + 1));
    (new NameDialog({title, tr("&Name:"), tr("&Create")}, problem, add, window()))->open();
}

void QuickNavRequests::askOtherName(const QuickNavRef &node)
{
    const auto problem = [this, node](const QString &name) {
        return m_editing.nameProblem(node, name);
    };
    const auto rename = [this, node](const QString &name) {
        m_editing.rename(node, name);
        return true;
    };
    const QuickNavNode *old = QuickNavTree::find(m_editing.contents().nav(), node);
    const QString title = tr("Rename %1").arg(QuickNavTree::word(node.level));
    (new NameDialog({title, tr("&Name:"), tr("&Rename"), old != nullptr ? old->name : QString()},
                    problem, rename, window()))
        ->open();
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
