#pragma once

#include "tools/PageSearch.h"

#include <QObject>

#include <thread>

/// One search over pages on a thread of its own; what it finds arrives piece by piece on the
/// window's thread. Destroying it stops and waits.
class PageSearchRun final : public QObject
{
    Q_OBJECT

public:
    PageSearchRun(FileSystem &files, SearchedPages pages, QStringList folders, PageQuery query,
                  QObject *parent = nullptr);
    ~PageSearchRun() override;

    void stop() { m_thread.request_stop(); }
    /// What was searched; complete once `finished` was emitted.
    [[nodiscard]] const SearchedPages &pages() const { return m_pages; }
    [[nodiscard]] const PageQuery &query() const { return m_query; }

Q_SIGNALS:
    void found(const QList<FoundPage> &pages);
    void progressed(int done, int total);
    /// `problem` is why it ended early; "" when it did not or was stopped.
    void finished(bool stopped, const QString &problem);

private:
    void work(const std::stop_token &stop);
    void search(const Progress &progress);
    void deliver(QList<FoundPage> pages, int done, int total);

    FileSystem &m_files;
    SearchedPages m_pages;
    QStringList m_folders;
    PageQuery m_query;
    std::jthread m_thread;
};
