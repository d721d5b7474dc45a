#include "controls/books/PageHistory.h"

#include "controls/books/PagePlaces.h"

#include <QScopedValueRollback>

namespace {
constexpr qsizetype longest = 200;
}

PageHistory::PageHistory(ProjectSession &session, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_project(session.projectName())
{
    connect(&session, &ProjectSession::selectionChanged, this, &PageHistory::note);
    connect(&session, &ProjectSession::wasReset, this, &PageHistory::beginAnew);
}

// A copy of a project has pages of the same names.
void PageHistory::beginAnew()
{
    if (m_session.projectName() == m_project)
        return;
    m_project = m_session.projectName();
    m_visits.clear();
    m_at = -1;
}

void PageHistory::note()
{
    const auto &book = m_session.currentBook();
    if (m_isGoing || !book || m_session.currentPage().isEmpty())
        return;
    const Visit *const last = m_at >= 0 ? &m_visits.at(m_at) : nullptr;
    if (last && identityOf(last->book) == identityOf(*book)
        && last->page == m_session.currentPage())
        return; // the book was chosen meanwhile, and now its page again
    m_visits.resize(m_at + 1);
    m_visits.append({*book, m_session.currentPage()});
    if (m_visits.size() > longest)
        m_visits.removeFirst();
    m_at = m_visits.size() - 1;
}

void PageHistory::go(int by)
{
    const QScopedValueRollback going(m_isGoing, true);
    for (qsizetype to = m_at + by; to >= 0 && to < m_visits.size(); to += by) {
        const Visit visit = m_visits.at(to);
        if (!pageOfBook(m_session, visit.book, visit.page))
            continue;
        if (m_session.select(visit.book, visit.page))
            m_at = to;
        return;
    }
}
