#pragma once

#include "platform/Progress.h"
#include "startup/Program.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace Ui {
class frmProgBar;
}

/// The progress dialog: what is being done, how far it is, the file at hand, Stop. No other window
/// takes a command while it is open, and its close box means Stop.
class frmProgBar final : public QWidget
{
    Q_OBJECT

public:
    frmProgBar(Program &program, QWidget *parent, const QString &caption);
    ~frmProgBar() override;

    /// See `runWithProgress`.
    void run(const std::function<void(const Progress &)> &work);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct State
    {
        int done = 0;
        int total = 0;
        QString what;
    };

    void cmdStop_Click();
    [[nodiscard]] Progress progress();
    void showLatest();

    Program &m_program;
    std::unique_ptr<Ui::frmProgBar> ui;
    std::stop_source m_stop;
    QTimer m_refresh;
    std::mutex m_guard; ///< of m_latest, which the worker writes
    State m_latest;
};

/// Runs `work` on a thread of its own and returns when it has ended; the progress dialog shows
/// unless it ends at once. Throws what it throws: `Unwinding` when Stop was pressed. A program that
/// ends meanwhile stops it first. `work` touches no widget and has the session and the ports to
/// itself.
void runWithProgress(Program &program, QWidget *parent, const QString &caption,
                     const std::function<void(const Progress &)> &work);
