#pragma once

// For functions of the C library that the program defines anew, to change what they do for Firebird. The program's own
// symbols precede those of the C library in every module that is loaded later.

#include <atomic>
#include <cstring>
#include <dlfcn.h>

/// The next definition of a function after the program's own, looked up at the first call. Not a function-local static,
/// whose guard might itself need a mutex.
template <typename Function>
class Real
{
public:
    explicit constexpr Real(const char *name) : m_name(name) {}
    Function *operator()()
    {
        Function *function = m_function.load(std::memory_order_relaxed);
        if (!function) {
            function = reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, m_name));
            m_function.store(function, std::memory_order_relaxed);
        }
        return function;
    }

private:
    const char *m_name;
    std::atomic<Function *> m_function{nullptr};
};

/// True for the address of a call in Firebird's client library or engine.
inline bool IsEngine(const void *caller)
{
    Dl_info module = {};
    if (::dladdr(caller, &module) == 0 || !module.dli_fname)
        return false;
    return std::strstr(module.dli_fname, "libEngine") || std::strstr(module.dli_fname, "libfbclient");
}
