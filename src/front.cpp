// What authors start. Brings QV Developer to the front when it runs already, which takes no longer
// than an empty program; otherwise becomes it.
#include "platform/portable/SingleInstance.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

/// "qvdeveloper" in the folder of this program; "" when the system does not say which that is.
std::string mainProgram()
{
    char path[4096];
    const ssize_t size = readlink("/proc/self/exe", path, sizeof(path));
    if (size <= 0 || size == ssize_t(sizeof(path)))
        return {};
    const std::string own(path, size_t(size));
    return own.substr(0, own.rfind('/') + 1) + "qvdeveloper";
}

} // namespace

int main(int, char *argv[])
{
    if (SingleInstance::isRunning("QVDeveloper")) {
        SingleInstance::handOver("QVDeveloper", "Quovane Developer Pro");
        return 0;
    }
    const std::string program = mainProgram();
    if (program.empty()) {
        std::fputs("QV Developer cannot be started: the system does not say where it lies. /proc "
                   "must be mounted.\n",
                   stderr);
        return 1;
    }
    execv(program.c_str(), argv);
    std::fprintf(stderr, "%s cannot be started: %s. Install QV Developer again.\n", program.c_str(),
                 std::strerror(errno));
    return 1;
}
