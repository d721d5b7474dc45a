#include "platform/portable/StandardStreams.h"

#include <QtGlobal>

#include <fcntl.h>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

#ifdef Q_OS_WIN

// The number of a stream that is closed is negative; no other file gets it here.
void prepareStandardStreams()
{
    for (std::FILE *const stream : {stdout, stderr}) {
        if (const int number = ::_fileno(stream); number >= 0)
            ::_setmode(number, _O_BINARY);
    }
}

bool isTerminal(std::FILE *stream)
{
    const int number = ::_fileno(stream);
    return number >= 0 && ::_isatty(number) != 0;
}

#else

void prepareStandardStreams()
{
    int stream = STDIN_FILENO;
    while (stream >= 0 && stream <= STDERR_FILENO)
        stream = ::open("/dev/null", O_RDONLY);
    if (stream >= 0)
        ::close(stream);
}

bool isTerminal(std::FILE *stream)
{
    return ::isatty(::fileno(stream)) == 1;
}

#endif
