#include "controls/quicknav/QuickNavContents.h"

#include "controls/session/ProjectPages.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

namespace {
QString keyOf(int level, const QString &id)
{
    return QString::number(level) + u' ' + id;
}
} // namespace

QuickNavContents::QuickNavContents(ProjectSession &session, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_targets(session)
{
    for (const auto signal : {&ProjectSession::wasReset, &ProjectSession::booksChanged,
                              &ProjectSession::quickNavChanged})
        connect(&session, signal, this, &QuickNavContents::outdate);
    connect(&session, &ProjectSession::bookChanged, this, &QuickNavContents::outdate);
    connect(&session, &ProjectSession::filesChanged, this, &QuickNavContents::outdate);
    connect(&session.pages(), &ProjectPages::updated, this, &QuickNavContents::outdate);
}

void QuickNavContents::setWatched(bool watched)
{
    m_isWatched = watched;
    if (watched)
        refresh();
}

// Several changes in a row are looked at once.
void QuickNavContents::outdate()
{
    if (m_isOutdated)
        return;
    m_isOutdated = true;
    if (m_isWatched)
        QMetaObject::invokeMethod(this, &QuickNavContents::refresh, Qt::QueuedConnection);
}

void QuickNavContents::refresh()
{
    if (!m_isOutdated)
        return;
    m_isOutdated = false;
    read();
    Q_EMIT changed();
}

void QuickNavContents::read()
{
    m_targets.forget();
    m_tallies.clear();
    m_problem.clear();
    m_nav = {};
    if (m_session.projectName().isEmpty())
        return;
    trap([this](const QvError &error) { m_problem = error.description(); },
         [this] { m_nav = m_session.quickNav(); });
    for (const QuickNavNode &view : std::as_const(m_nav.views))
        count(view, 0);
}

QuickNavContents::Tally QuickNavContents::count(const QuickNavNode &node, int level)
{
    Tally tally;
    tally.children = static_cast<int>(node.children.size());
    tally.links = static_cast<int>(node.links.size());
    for (const QuickNavLink &link : node.links)
        tally.dead += m_targets.of(link).isDead() ? 1 : 0;
    for (const QuickNavNode &child : node.children) {
        const Tally below = count(child, level + 1);
        tally.links += below.links;
        tally.dead += below.dead;
    }
    m_tallies.insert(keyOf(level, node.id), tally);
    return tally;
}

QuickNavContents::Tally QuickNavContents::tallyOf(const QuickNavRef &node) const
{
    return m_tallies.value(keyOf(node.level, node.id));
}
