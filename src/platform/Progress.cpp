#include "platform/Progress.h"

#include "platform/QvError.h"

void Progress::step(int done, int total, const QString &what) const
{
    if (report)
        report(done, total, what);
    if (stop.stop_requested())
        throw Unwinding{Unwinding::Reason::Stopped};
}

Progress Progress::piece(int index, int count, const QString &name) const
{
    if (!report)
        return *this;
    constexpr int fine = 1000;
    const auto tell = [whole = report, index, count, name](int done, int total,
                                                           const QString &what) {
        const int share = total > 0 ? static_cast<int>(qint64(done) * fine / total) : 0;
        whole(index * fine + share, count * fine, what.isEmpty() ? name : what);
    };
    return {tell, stop};
}
