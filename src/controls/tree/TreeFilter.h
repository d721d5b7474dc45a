#pragma once

#include <QSortFilterProxyModel>
#include <QTimer>

class ProjectTreeModel;

/// The project tree as a filter shows it: matches, what leads to them and what lies below them.
/// Books that were not read yet are read meanwhile, a few at a time, so that nobody waits.
class TreeFilter final : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit TreeFilter(ProjectTreeModel &model, QObject *parent = nullptr);

    /// Keeps nodes that hold all words of `text`, without regard to case; "" keeps everything.
    void setText(const QString &text);
    [[nodiscard]] bool isFiltering() const { return !m_words.isEmpty(); }
    [[nodiscard]] int matches() const { return m_matches; }
    [[nodiscard]] bool isReading() const { return m_reading.isActive(); }
    /// The tree was read again: what it holds now is filtered.
    void refresh();

Q_SIGNALS:
    /// Other nodes are shown now.
    void filtered();

protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    void readSome();

    ProjectTreeModel &m_model;
    QStringList m_words;
    int m_matches = 0;
    QTimer m_reading;
};
