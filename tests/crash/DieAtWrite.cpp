#include "crash/DieAtWrite.h"

#include <atomic>
#include <climits>
#include <csignal>
#include <cstdio>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

namespace {

std::atomic<int> writes = 0, deadly = 0;

bool IsFileOfMarks(int file)
{
    char link[64], path[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t size = ::readlink(link, path, sizeof path);
    return size > 0 && std::string_view(path, static_cast<size_t>(size)).ends_with("/TARUNECLIENT.FDB");
}

} // namespace

int DieAtWrite(int number)
{
    deadly = number;
    return writes.exchange(0);
}

extern "C" ssize_t pwrite64(int file, const void *bytes, size_t size, off64_t offset)
{
    using Write = decltype(&pwrite64);
    static const auto next = reinterpret_cast<Write>(::dlsym(RTLD_NEXT, "pwrite64"));
    if (IsFileOfMarks(file) && ++writes == deadly)
        ::kill(::getpid(), SIGKILL);
    return next(file, bytes, size, offset);
}
