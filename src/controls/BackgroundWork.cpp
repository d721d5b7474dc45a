#include "controls/BackgroundWork.h"

#include "platform/ProgramEnd.h"
#include "platform/QvError.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressDialog>

#include <exception>
#include <future>
#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace {
constexpr auto withoutBox = 150ms;    ///< shorter work shows no box
constexpr qint64 betweenReports = 50; // ms

/// Takes the work's reports on the worker and passes on as many as an eye can follow.
class Reporter
{
public:
    explicit Reporter(QProgressDialog &box)
        : m_box(box)
    {
        m_last.start();
    }

    void operator()(int done, int total, const QString &what)
    {
        if (done != 0 && m_last.elapsed() < betweenReports)
            return;
        m_last.restart();
        QMetaObject::invokeMethod(
            &m_box,
            [&box = m_box, done, total, what] {
                box.setMaximum(total);
                box.setValue(qMin(done, qMax(total - 1, 0)));
                if (!what.isEmpty())
                    box.setLabelText(what);
            },
            Qt::QueuedConnection);
    }

private:
    QProgressDialog &m_box;
    QElapsedTimer m_last;
};

void prepare(QProgressDialog &box, const QString &title)
{
    box.setWindowTitle(title);
    box.setWindowModality(Qt::ApplicationModal);
    box.setAutoClose(false);
    box.setAutoReset(false);
    box.setMinimumDuration(0);
    box.setMinimumWidth(box.fontMetrics().averageCharWidth() * 60);
    box.reset();
}

void waitWithBox(QProgressDialog &box, QEventLoop &loop, std::jthread &worker)
{
    QObject::connect(&box, &QProgressDialog::canceled, &loop, [&] {
        worker.request_stop();
        box.setLabelText(QProgressDialog::tr("Stopping..."));
        box.show(); // The box goes when the work has really ended.
    });
    box.show();
    loop.exec();
}
} // namespace

bool runInBackground(Program &program, QWidget *window, const QString &title,
                     const std::function<void(const Progress &)> &work)
{
    QProgressDialog box(title, QProgressDialog::tr("Stop"), 0, 0, window);
    prepare(box, title);
    QEventLoop loop;
    std::promise<void> outcome;
    std::future<void> result = outcome.get_future();

    std::jthread worker([&](const std::stop_token &stop) {
        const auto reporter = std::make_shared<Reporter>(box);
        const auto report = [reporter](int done, int total, const QString &what) {
            (*reporter)(done, total, what);
        };
        try {
            work({report, stop});
            outcome.set_value();
        } catch (...) {
            outcome.set_exception(std::current_exception());
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    const int atEnd = program.ending.before([&] {
        worker.request_stop();
        worker.join();
    });
    if (result.wait_for(withoutBox) != std::future_status::ready)
        waitWithBox(box, loop, worker);
    program.ending.forget(atEnd);
    if (worker.joinable())
        worker.join();
    try {
        result.get();
    } catch (const Unwinding &unwinding) {
        if (unwinding.reason != Unwinding::Reason::Stopped)
            throw;
        return false;
    }
    return true;
}
