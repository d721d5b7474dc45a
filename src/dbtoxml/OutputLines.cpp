#include "dbtoxml/OutputLines.h"

#include <csignal>
#include <cstdio>

namespace {

volatile std::sig_atomic_t isAskedToEnd = 0;

} // namespace

// What is half made must be removed first, so neither of the two ends the program at once.
OutputLines::OutputLines()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTERM, [](int) { isAskedToEnd = 1; });
}

Progress OutputLines::progress()
{
    const auto tell = [this](int done, int total, const QString &what) {
        if (isAskedToEnd != 0)
            m_stop.request_stop();
        constexpr qint64 pause = 50;    // milliseconds
        const bool isLong = total == 0; // nothing else may come for a while
        if (!isLong && m_sinceStep.isValid() && !m_sinceStep.hasExpired(pause))
            return;
        m_sinceStep.start();
        write(ConversionLines::progress(done, total, what));
    };
    return {tell, m_stop.get_token()};
}

void OutputLines::say(const ConversionReport &report)
{
    QByteArray lines;
    for (const ConversionCount &count : report.counts)
        lines += ConversionLines::count(count);
    for (const ConversionProblem &problem : report.problems)
        lines += ConversionLines::problem(problem);
    write(lines + ConversionLines::end(report.end, report.reason, report.folder));
}

void OutputLines::write(const QByteArray &lines)
{
    const auto size = static_cast<size_t>(lines.size());
    if (std::fwrite(lines.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        m_stop.request_stop();
}
