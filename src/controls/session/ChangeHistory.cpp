#include "controls/session/ChangeHistory.h"

namespace {
constexpr qint64 mostBytes = 256LL * 1024 * 1024;
}

void ChangeHistory::add(const QString &name, FileChanges changes)
{
    m_entries.resize(m_done);
    m_entries.append({name, std::move(changes)});
    m_done = m_entries.size();
    forgetOldest();
    Q_EMIT changed();
}

void ChangeHistory::rewrite(const Rule &rule)
{
    const auto apply = [&](const QString &path, std::optional<QByteArray> &bytes) {
        if (bytes)
            bytes = rule(path, *bytes);
    };
    for (Entry &entry : m_entries) {
        for (FileStep &step : entry.changes.steps) {
            apply(step.path, step.before);
            apply(step.path, step.after);
        }
        for (ExpectedFile &file : entry.changes.expected)
            apply(file.path, file.bytes);
    }
}

void ChangeHistory::clear()
{
    m_entries.clear();
    m_done = 0;
    Q_EMIT changed();
}

void ChangeHistory::forgetUndo()
{
    m_entries.remove(0, m_done);
    m_done = 0;
    Q_EMIT changed();
}

void ChangeHistory::forgetRedo()
{
    m_entries.resize(m_done);
    Q_EMIT changed();
}

QString ChangeHistory::undoName() const
{
    return canUndo() ? m_entries.at(m_done - 1).name : QString();
}

QString ChangeHistory::redoName() const
{
    return canRedo() ? m_entries.at(m_done).name : QString();
}

FileChanges ChangeHistory::undoing() const
{
    return m_entries.at(m_done - 1).changes.reversed();
}

FileChanges ChangeHistory::redoing() const
{
    return m_entries.at(m_done).changes.reversed();
}

void ChangeHistory::undone(const FileChanges &changes)
{
    m_entries[--m_done].changes = changes;
    Q_EMIT changed();
}

void ChangeHistory::redone(const FileChanges &changes)
{
    m_entries[m_done++].changes = changes;
    Q_EMIT changed();
}

// The last command can always be undone, however large it is.
void ChangeHistory::forgetOldest()
{
    qint64 bytes = 0;
    for (qsizetype i = m_entries.size() - 1; i > 0; --i) {
        bytes += m_entries.at(i).changes.size();
        if (bytes + m_entries.at(i - 1).changes.size() <= mostBytes)
            continue;
        m_entries.remove(0, i);
        m_done -= i;
        return;
    }
}
