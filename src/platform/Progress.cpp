#include "platform/Progress.h"

#include "platform/QvError.h"

void Progress::step(int done, int total, const QString &what) const
{
    if (report)
        report(done, total, what);
    if (stop.stop_requested())
        throw Unwinding{Unwinding::Reason::Stopped};
}
