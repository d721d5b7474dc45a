#include "startup/frmProgBar.h"

#include "platform/ProgramEnd.h"
#include "resources/Icons.h"
#include "resources/Texts.h"
#include "ui_frmProgBar.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QScopeGuard>

#include <chrono>
#include <future>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto withoutDialog = 150ms; ///< work that ends sooner shows no dialog
constexpr auto betweenLooks = 50ms;
} // namespace

frmProgBar::frmProgBar(Program &program, QWidget *parent, const QString &caption)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                          | Qt::WindowCloseButtonHint)
    , m_program(program)
    , ui(std::make_unique<Ui::frmProgBar>())
{
    ui->setupUi(this);
    setWindowTitle(text(Text::WindowTitle));
    setWindowModality(Qt::ApplicationModal);
    ui->lblCaption->setText(caption);
    ui->cmdStop->setIcon(icon("stop"_L1));
    connect(ui->cmdStop, &QPushButton::clicked, this, &frmProgBar::cmdStop_Click);
    connect(&m_refresh, &QTimer::timeout, this, &frmProgBar::showLatest);
}

frmProgBar::~frmProgBar() = default;

void frmProgBar::run(const std::function<void(const Progress &)> &work)
{
    std::packaged_task<void(const Progress &)> task(work);
    std::future<void> result = task.get_future();
    QEventLoop loop;
    std::jthread worker;
    const int last = m_program.ending.before([&] {
        m_stop.request_stop();
        if (worker.joinable())
            worker.join();
    });
    const auto forget = qScopeGuard([&] { m_program.ending.forget(last); });

    worker = std::jthread([&, progress = progress()] {
        task(progress);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    if (result.wait_for(withoutDialog) != std::future_status::ready) {
        show();
        m_refresh.start(betweenLooks);
        loop.exec();
    }
    result.get();
}

Progress frmProgBar::progress()
{
    const auto note = [this](int done, int total, const QString &what) {
        const std::scoped_lock lock(m_guard);
        m_latest = {done, total, what};
    };
    return {note, m_stop.get_token()};
}

void frmProgBar::showLatest()
{
    State latest;
    {
        const std::scoped_lock lock(m_guard);
        latest = m_latest;
    }
    ui->ProgressBar1->setRange(0, latest.total); // 0 to 0 shows that it is busy
    ui->ProgressBar1->setValue(latest.done);
    const int width = ui->lblFile->width();
    ui->lblFile->setText(fontMetrics().elidedText(latest.what, Qt::ElideMiddle, width));
}

void frmProgBar::cmdStop_Click()
{
    m_stop.request_stop();
    ui->cmdStop->setEnabled(false);
    ui->lblCaption->setText(u"Stopping..."_s);
}

void frmProgBar::closeEvent(QCloseEvent *event)
{
    cmdStop_Click();
    event->ignore();
}

void frmProgBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cmdStop_Click();
    else
        QWidget::keyPressEvent(event);
}

void runWithProgress(Program &program, QWidget *parent, const QString &caption,
                     const std::function<void(const Progress &)> &work)
{
    frmProgBar(program, parent, caption).run(work);
}
