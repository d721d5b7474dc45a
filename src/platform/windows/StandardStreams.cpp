#include "platform/shared/StandardStreams.h"

#include "platform/windows/win32/Win32Error.h"

#include <cstdlib>
#include <fcntl.h>
#include <io.h>

namespace {

UINT formerCodePage = 0;

/// Null when the stream is closed. Its number is negative then; no other file gets it here.
HANDLE handleOf(std::FILE *stream)
{
    const int number = ::_fileno(stream);
    return number < 0 ? nullptr : reinterpret_cast<HANDLE>(::_get_osfhandle(number));
}

/// What is printed is UTF-8, which a console takes for the code page of old programs, byte by byte
/// where the runtime does not gather it.
void letConsoleReadUtf8()
{
    constexpr size_t gathered = 65'536;
    std::setvbuf(stdout, nullptr, _IOFBF, gathered);
    std::setvbuf(stderr, nullptr, _IOFBF, gathered);
    formerCodePage = GetConsoleOutputCP();
    if (formerCodePage != CP_UTF8 && SetConsoleOutputCP(CP_UTF8))
        std::atexit([] { SetConsoleOutputCP(formerCodePage); });
}

} // namespace

void prepareStandardStreams()
{
    for (std::FILE *const stream : {stdout, stderr}) {
        if (const int number = ::_fileno(stream); number >= 0)
            ::_setmode(number, _O_BINARY);
    }
    if (isTerminal(stdout) || isTerminal(stderr))
        letConsoleReadUtf8();
}

bool isTerminal(std::FILE *stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

bool takesEscapes(std::FILE *stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode)
           && SetConsoleMode(handleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}
