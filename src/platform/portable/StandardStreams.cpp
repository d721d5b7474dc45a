#include "platform/shared/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

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

bool takesEscapes(std::FILE *stream)
{
    return isTerminal(stream);
}
