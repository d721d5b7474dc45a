#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <stop_token>

/// What a program that is waited for may take.
struct ProcessLimits
{
    std::chrono::seconds silence{60}; ///< longest time without a line of output
    qint64 memory = 2'000'000'000;    ///< bytes of address space
};

/// How such a program ended.
struct ProcessEnd
{
    enum class Kind {
        Exited,  ///< with `status`
        Crashed, ///< also when it ran out of memory
        Silent,  ///< and was ended for it
        Stopped, ///< by the stop token
    } kind = Kind::Exited;
    int status = 0;
    QString lastWords = {}; ///< the end of what it wrote to its standard error, one line
};

/// Starts other programs: by full path with a list of arguments, never through a shell.
class Processes
{
public:
    virtual ~Processes() = default;

    /// Starts `program` (a product path; ".exe" may be absent on disk) in a normal window and does
    /// not wait. Where it does not lie, the one of that name beside this program is started. Raises
    /// 53 when there is neither, 70 when it cannot be started.
    virtual void start(const QString &program, const QStringList &arguments) = 0;

    /// Runs `program` (a product path, or the bare name of one beside this program) without a
    /// window and waits for its end; `line` is told each line of its standard output without the
    /// line end. A stop first asks the program to end (SIGTERM), so that it can tidy up and say its
    /// last lines, and kills it 3 seconds later. However this ends, the program does not run any
    /// more. May be called on any thread. Raises as `start`.
    virtual ProcessEnd run(const QString &program, const QStringList &arguments,
                           const ProcessLimits &limits, const std::stop_token &stop,
                           const std::function<void(const QByteArray &line)> &line) = 0;

    /// Opens a text file (a product path) in the system's viewer. Raises 53.
    virtual void openText(const QString &path) = 0;

    /// Opens a page (a product path, no anchor) in the system's browser. Raises 53.
    virtual void openPage(const QString &path) = 0;
};
