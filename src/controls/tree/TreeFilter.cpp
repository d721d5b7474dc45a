#include "controls/tree/TreeFilter.h"

#include "controls/tree/ProjectTreeModel.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace {
constexpr int sliceOfReading = 30; // ms; keys and mouse are heard in between
}

TreeFilter::TreeFilter(ProjectTreeModel &model, QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_model(model)
{
    setSourceModel(&model);
    connect(&m_reading, &QTimer::timeout, this, &TreeFilter::readSome);
}

void TreeFilter::setText(const QString &text)
{
    m_words = text.split(u' ', Qt::SkipEmptyParts);
    refresh();
}

void TreeFilter::refresh()
{
    m_matches = m_model.markMatches(m_words);
    if (isFiltering() && m_model.nextUnread().isValid())
        m_reading.start();
    else
        m_reading.stop();
    invalidateFilter();
    Q_EMIT filtered();
}

bool TreeFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    return m_model.isKept(m_model.index(row, 0, parent));
}

void TreeFilter::readSome()
{
    QElapsedTimer time;
    time.start();
    QModelIndex unread = m_model.nextUnread();
    while (unread.isValid() && !time.hasExpired(sliceOfReading)) {
        m_model.fetchMore(unread);
        unread = m_model.nextUnread();
    }
    refresh();
}
