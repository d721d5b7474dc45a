#include "controls/pages/PageSearchRun.h"

#include "platform/QvError.h"

#include <QElapsedTimer>

namespace {
constexpr int restTime = 50; // milliseconds between two deliveries
}

PageSearchRun::PageSearchRun(FileSystem &files, SearchedPages pages, QStringList folders,
                             PageQuery query, QObject *parent)
    : QObject(parent)
    , m_files(files)
    , m_pages(std::move(pages))
    , m_folders(std::move(folders))
    , m_query(std::move(query))
    , m_thread([this](const std::stop_token &stop) { work(stop); })
{
}

// The thread ends before anything it uses.
PageSearchRun::~PageSearchRun()
{
    m_thread.request_stop();
    m_thread.join();
}

void PageSearchRun::work(const std::stop_token &stop)
{
    bool stopped = false;
    QString problem;
    try {
        trap([&](const QvError &error) { problem = error.description(); },
             [&] {
                 search({{}, stop});
             });
    } catch (const Unwinding &) {
        stopped = true;
    }
    QMetaObject::invokeMethod(
        this, [this, stopped, problem] { Q_EMIT finished(stopped, problem); },
        Qt::QueuedConnection);
}

void PageSearchRun::search(const Progress &progress)
{
    m_pages.paths = pagesBelow(m_files, m_pages.projectFolder, m_folders);
    QList<FoundPage> waiting;
    QElapsedTimer since;
    since.start();
    int done = 0;
    int total = 0;
    const auto flush = [&] {
        deliver(std::exchange(waiting, {}), done, total);
        since.restart();
    };
    const auto step = [&](int now, int all, const QString &) {
        done = now;
        total = all;
        if (since.elapsed() >= restTime)
            flush();
    };
    const auto found = [&](const FoundPage &page) { waiting.append(page); };
    searchPages(m_files, m_pages, m_query, {step, progress.stop}, found);
    flush();
}

void PageSearchRun::deliver(QList<FoundPage> pages, int done, int total)
{
    QMetaObject::invokeMethod(
        this,
        [this, pages = std::move(pages), done, total] {
            Q_EMIT progressed(done, total);
            if (!pages.isEmpty())
                Q_EMIT found(pages);
        },
        Qt::QueuedConnection);
}
