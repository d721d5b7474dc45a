#include "qvdev/ProgressLine.h"

#include "platform/shared/StandardStreams.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype width = 76; // of a line that no terminal breaks

} // namespace

ProgressLine::ProgressLine()
    : m_isTerminal(isTerminal(stderr))
    , m_takesEscapes(takesEscapes(stderr))
{
}

void ProgressLine::show(int done, int total, const QString &what)
{
    if (!m_isTerminal)
        return;
    const std::scoped_lock lock(m_guard);
    const auto now = std::chrono::steady_clock::now();
    if (now < m_next)
        return;
    m_next = now + 100ms;
    const QString share = total > 0 ? u"%1 %  "_s.arg(qint64(done) * 100 / total, 3) : u"  ...  "_s;
    write((share + what).left(width));
    m_isShown = true;
}

void ProgressLine::clear()
{
    const std::scoped_lock lock(m_guard);
    if (m_isShown)
        write({});
    m_isShown = false;
}

void ProgressLine::write(const QString &line)
{
    const QByteArray blank = m_takesEscapes ? "\r\x1b[K"_ba : '\r' + QByteArray(width, ' ') + '\r';
    const QByteArray bytes = blank + line.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
    std::fflush(stderr);
}
