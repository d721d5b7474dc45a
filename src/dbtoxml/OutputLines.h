#pragma once

#include "components/ConversionReport.h"
#include "platform/Progress.h"

#include <QElapsedTimer>

/// The program's standard output, which the editor reads. When nobody reads it any more, or the
/// program is asked to end (SIGTERM), Stop is asked for.
class OutputLines final
{
public:
    OutputLines();

    /// Tells at most some twenty steps a second, and each that says no total.
    [[nodiscard]] Progress progress();
    /// The last lines.
    void say(const ConversionReport &report);

private:
    void write(const QByteArray &lines);

    QElapsedTimer m_sinceStep;
    std::stop_source m_stop;
};
