// The system calls under the Windows adapters, without Qt, so that they can be checked wherever
// mingw and Wine are. Prints what fails; the exit status is the number of failures.
//   adapters             runs the checks
//   adapters announce    announces a window, says what is asked of it, ends when asked to close
//   adapters hold        is the instance "check" for a second
//   adapters lock        holds the lock "adapters.lock" in the temporary folder until it is ended
#include "Checks.h"

namespace {

void errorsHaveWords()
{
    CHECK(!win32::describe(ERROR_ACCESS_DENIED).empty());
    CHECK(win32::describe(0x2FFFFFFF) == L"Error 805306367");
}

} // namespace

int main(int argc, char *argv[])
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc > 1)
        return serve(argv[1]);
    checkFiles();
    checkRegistry();
    checkPrograms();
    errorsHaveWords();
    std::printf("%d failed\n", failures);
    return failures;
}
