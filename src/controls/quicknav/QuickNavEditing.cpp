#include "controls/quicknav/QuickNavEditing.h"

#include "controls/parts/Handler.h"

using namespace Qt::StringLiterals;

QuickNavEditing::QuickNavEditing(QuickNavContents &contents, QObject *parent)
    : QObject(parent)
    , m_contents(contents)
    , m_session(contents.session())
    , m_commands(m_session)
{
}

// `body` does the command and returns what to say about it. `about` names the place in the event,
// as it was before when it has gone.
template <typename Body>
void QuickNavEditing::run(const QuickNavRef &about, const Body &body)
{
    m_contents.refresh();
    const QuickNav before = m_contents.nav();
    QStringList names = QuickNavTree::namesTo(before, about);
    const QString says = handled(m_session.program(), [&] { return body(); });
    m_contents.refresh();
    if (m_contents.nav() == before)
        return;
    if (QuickNavTree::find(m_contents.nav(), about) != nullptr)
        names = QuickNavTree::namesTo(m_contents.nav(), about);
    Q_EMIT written(names.value(0), names.value(QuickNavTree::categoryLevel));
    if (!says.isEmpty())
        Q_EMIT m_session.done(says);
}

QString QuickNavEditing::nameOf(const QuickNavRef &node) const
{
    const QuickNavNode *found = QuickNavTree::find(m_contents.nav(), node);
    return found != nullptr ? found->name : QString();
}

QString QuickNavEditing::newNameProblem(const QuickNavRef &parent, const QString &name) const
{
    return QuickNavTree::nameProblem(parent.level + 1, name,
                                     QuickNavTree::below(m_contents.nav(), parent));
}

QString QuickNavEditing::nameProblem(const QuickNavRef &node, const QString &name) const
{
    const QuickNav &nav = m_contents.nav();
    QList<QuickNavNode> siblings = QuickNavTree::below(nav, QuickNavTree::parentOf(nav, node));
    siblings.removeIf([&](const QuickNavNode &sibling) { return sibling.id == node.id; });
    return QuickNavTree::nameProblem(node.level, name, siblings);
}

void QuickNavEditing::add(const QuickNavRef &parent, const QString &name, int place)
{
    QuickNavRef added;
    run(parent, [&] {
        added = m_commands.add(parent, name, place);
        return tr("The %1 %2 was added.").arg(QuickNavTree::word(parent.level + 1), name);
    });
    if (added.level >= 0)
        Q_EMIT shown(added);
}

void QuickNavEditing::rename(const QuickNavRef &node, const QString &name)
{
    if (nameOf(node) == name.trimmed())
        return;
    run(node, [&] {
        m_commands.rename(node, name);
        return tr("The %1 is now called %2.").arg(QuickNavTree::word(node.level), name.trimmed());
    });
}

bool QuickNavEditing::mayDelete(const QuickNavRef &node) const
{
    const QuickNavNode *found = QuickNavTree::find(m_contents.nav(), node);
    if (found == nullptr || (found->children.isEmpty() && found->links.isEmpty()))
        return true; // an empty one is made again at once
    const QString question =
        tr("Delete the %1 \"%2\"?").arg(QuickNavTree::word(node.level), found->name);
    const int below = QuickNavTree::nodesIn(*found);
    const QString links = QuickNavTree::linkCount(QuickNavTree::linksIn(*found));
    const QString what =
        below == 0 ? tr("%1 will go with it.").arg(links)
                   : tr("%1 below it and %2 will go with it.")
                         .arg(below == 1 ? tr("1 entry") : tr("%1 entries").arg(below), links);
    return m_session.program().messages.show(
               {.text = question, .buttons = Buttons::YesNo, .details = what})
           == Answer::Yes;
}

void QuickNavEditing::remove(const QuickNavRef &node)
{
    m_contents.refresh();
    const QString name = nameOf(node);
    if (name.isEmpty() || !mayDelete(node))
        return;
    bool gone = false;
    run(node, [&] {
        const int links = m_commands.remove(node);
        gone = true;
        const QString word = QuickNavTree::word(node.level);
        return links == 0 ? tr("The %1 %2 was deleted.").arg(word, name)
                          : tr("The %1 %2 was deleted with %3.")
                                .arg(word, name, QuickNavTree::linkCount(links));
    });
    if (gone)
        Q_EMIT nodeDeleted();
}

void QuickNavEditing::moveBy(const QuickNavRef &node, int places)
{
    run(node, [&] {
        m_commands.moveBy(node, places);
        return tr("The %1 %2 was moved.").arg(QuickNavTree::word(node.level), nameOf(node));
    });
    Q_EMIT shown(node);
}

void QuickNavEditing::moveTo(const QuickNavRef &node, const QuickNavRef &parent, int place)
{
    run(node, [&] {
        m_commands.moveTo(node, parent, place);
        return tr("The %1 %2 was moved.").arg(QuickNavTree::word(node.level), nameOf(node));
    });
    Q_EMIT shown(node);
}

void QuickNavEditing::copyTo(const QuickNavRef &node, const QuickNavRef &parent, int place)
{
    QuickNavRef copy;
    run(node, [&] {
        copy = m_commands.copyTo(node, parent, place);
        return tr("The %1 %2 was copied.").arg(QuickNavTree::word(node.level), nameOf(node));
    });
    if (copy.level >= 0)
        Q_EMIT shown(copy);
}

void QuickNavEditing::addLinks(const QuickNavRef &category, const QList<QuickNavLink> &links,
                               int place)
{
    run(category, [&] {
        const int added = m_commands.addLinks(category, links, place);
        if (added == 0)
            Q_EMIT m_session.done(tr("The category links there already."));
        return added == 1
                   ? tr("1 link was added to %1.").arg(nameOf(category))
                   : tr("%1 links were added to %2.").arg(QString::number(added), nameOf(category));
    });
}

void QuickNavEditing::removeLinks(const QuickNavRef &category, const QStringList &ids)
{
    run(category, [&] {
        m_commands.removeLinks(ids);
        return ids.size() == 1 ? tr("1 link was deleted.")
                               : tr("%1 links were deleted.").arg(ids.size());
    });
}

void QuickNavEditing::moveLinksBy(const QuickNavRef &category, const QStringList &ids, int places)
{
    run(category, [&] {
        m_commands.moveLinksBy(category, ids, places);
        return tr("%1 moved.").arg(QuickNavTree::linkCount(ids.size()));
    });
}

void QuickNavEditing::changeTitle(const QuickNavLink &link, const QString &title)
{
    QuickNavLink now = link;
    now.title = title.trimmed();
    run({}, [&] {
        m_commands.changeLink(tr("Change title of link"), now);
        return tr("The link is now called %1.").arg(now.title);
    });
}

void QuickNavEditing::changeAnchor(const QuickNavLink &link, const QString &anchor)
{
    QuickNavLink now = link;
    now.anchor = anchor.trimmed();
    if (now.anchor.startsWith(u'#'))
        now.anchor.remove(0, 1);
    run({}, [&] {
        m_commands.changeLink(tr("Change place of link"), now);
        return tr("The link leads to another place of its page now.");
    });
}

void QuickNavEditing::retarget(const QuickNavLink &link, const ListedPage &page)
{
    QuickNavLink now = link;
    now.book = page.book.acronym;
    now.page = page.id;
    if (m_contents.targets().of(now).state == LinkTarget::State::NoAnchor)
        now.anchor.clear();
    run({}, [&] {
        m_commands.changeLink(tr("Choose another page for link"), now);
        return tr("The link leads to %1 now.").arg(page.title);
    });
}

void QuickNavEditing::put(const QuickNavItems &items, const QuickNavRef &parent, int place,
                          bool copy)
{
    if (items.level != QuickNavItems::linkLevel) {
        const QuickNavRef node{items.level, items.ids.value(0)};
        copy ? copyTo(node, parent, place) : moveTo(node, parent, place);
        return;
    }
    run(parent, [&] {
        if (copy)
            m_commands.copyLinks(items.ids, parent, place);
        else
            m_commands.moveLinks(items.ids, parent, place);
        return (copy ? tr("%1 copied to %2.") : tr("%1 moved to %2."))
            .arg(QuickNavTree::linkCount(items.ids.size()), nameOf(parent));
    });
}

QList<QuickNavLink> linksTo(const QList<ListedPage> &pages)
{
    QList<QuickNavLink> links;
    for (const ListedPage &page : pages)
        links.append({page.book.acronym, page.id, page.title, {}});
    return links;
}
