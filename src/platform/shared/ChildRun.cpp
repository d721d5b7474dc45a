#include "platform/shared/ChildRun.h"

#include "platform/QvError.h"
#include "platform/shared/ChildLimits.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

constexpr int pollTime = 50; // milliseconds between two looks at the stop token
constexpr auto timeToEnd = std::chrono::seconds(3);
constexpr qsizetype longestWords = 4096;   // bytes of standard error that are kept
constexpr qint64 longestLine = 16'000'000; // bytes; what sends more without a line end sends none

/// One run.
class Child final
{
public:
    Child(const ProcessLimits &limits, const std::function<void(const QByteArray &)> &line)
        : m_limits(limits)
        , m_line(line)
        , m_bounds(limits)
    {
        m_process.setStandardInputFile(QProcess::nullDevice());
        m_bounds.beforeStart(m_process);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child() { kill(); } // also when `line` threw

    void start(const QString &program, const QStringList &arguments)
    {
        m_process.start(program, arguments, QIODevice::ReadOnly);
        if (!m_process.waitForStarted())
            throw QvError(PermissionDenied, {},
                          u"%1 cannot be started: %2"_s.arg(program, m_process.errorString()));
        m_bounds.afterStart(m_process);
        m_sinceLine.start();
    }

    ProcessEnd wait(const std::stop_token &stop)
    {
        while (isRunning()) {
            listen();
            if (stop.stop_requested())
                return askToEnd();
            if (isSilent())
                return end(ProcessEnd::Kind::Silent);
        }
        readRest();
        return end(m_process.exitStatus() == QProcess::NormalExit ? ProcessEnd::Kind::Exited
                                                                  : ProcessEnd::Kind::Crashed);
    }

private:
    [[nodiscard]] bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    [[nodiscard]] bool isSilent() const
    {
        return m_sinceLine.hasExpired(std::chrono::milliseconds(m_limits.silence).count())
               || m_process.bytesAvailable() > longestLine;
    }

    /// It may tidy up after itself, and tell how far it came.
    ProcessEnd askToEnd()
    {
        m_process.terminate();
        const QDeadlineTimer deadline(timeToEnd);
        while (isRunning() && !deadline.hasExpired())
            listen();
        readRest();
        return end(ProcessEnd::Kind::Stopped);
    }

    void listen()
    {
        m_process.waitForReadyRead(pollTime);
        m_words += m_process.readAllStandardError();
        if (m_words.size() > longestWords)
            m_words = m_words.last(longestWords);
        while (m_process.canReadLine()) {
            m_sinceLine.restart();
            tell(m_process.readLine());
        }
    }

    void readRest()
    {
        listen();
        if (!isRunning() && m_process.bytesAvailable() > 0)
            tell(m_process.readAllStandardOutput());
    }

    void tell(QByteArray line)
    {
        if (line.endsWith('\n'))
            line.chop(1);
        m_line(line);
    }

    ProcessEnd end(ProcessEnd::Kind kind)
    {
        kill();
        const QList<QByteArray> lines = m_words.trimmed().split('\n');
        return {kind, kind == ProcessEnd::Kind::Exited ? m_process.exitCode() : 0,
                QString::fromLocal8Bit(lines.last())};
    }

    void kill()
    {
        if (!isRunning())
            return;
        m_process.kill();
        m_process.waitForFinished();
    }

    const ProcessLimits &m_limits;
    const std::function<void(const QByteArray &)> &m_line;
    ChildLimits m_bounds;
    QProcess m_process;
    QElapsedTimer m_sinceLine;
    QByteArray m_words;
};

} // namespace

ProcessEnd runChild(const QString &program, const QStringList &arguments,
                    const ProcessLimits &limits, const std::stop_token &stop,
                    const std::function<void(const QByteArray &line)> &line)
{
    Child child(limits, line);
    child.start(program, arguments);
    return child.wait(stop);
}

void startDetached(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (!process.startDetached())
        throw QvError(PermissionDenied, {},
                      u"%1 cannot be started: %2"_s.arg(program, process.errorString()));
}
