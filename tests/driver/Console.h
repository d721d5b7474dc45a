#pragma once

#include "support/TestProgram.h"

#include <cstdio>

/// UTF-8 lines on standard output.
inline void printLine(const QStringList &fields)
{
    const QByteArray line = fields.join(u'\t').toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
}

/// The world of the driver: real files, everything else as small as it can be. Message boxes are
/// lines; a question is answered as if closed. The clock stands, by default at the present.
struct Console : ScriptedProgram
{
    explicit Console(const QString &drives)
        : ScriptedProgram(drives)
    {
        clock.time = QDateTime::currentDateTime();
        messages.echo = printLine;
    }
    ProjectCatalogue catalogue() { return {session, files}; }
};
