// Firebird's engine looks for the ICU library by some 470 names, and again and again for the system's user and group
// "firebird". Each unknown library costs a look through the linker's whole cache, mapped and unmapped, each user a
// question to every service of names: together more than all other work of a start. So these calls of the engine pass
// through here and are answered at once. Calls of all other modules pass unchanged.

#include "stores/engine/FirebirdCallsUnix.h"

#include <QByteArray>

#include <grp.h>
#include <link.h>
#include <pwd.h>

namespace {

constinit Real<void *(const char *, int)> RealDlopen("dlopen");
constinit Real<passwd *(const char *)> RealGetpwnam("getpwnam");
constinit Real<group *(const char *)> RealGetgrnam("getgrnam");

/// With a slash at its end; empty if this process has no ICU.
QByteArray FolderOfLoadedIcu()
{
    QByteArray folder;
    const auto look = [](dl_phdr_info *module, size_t, void *found) {
        const QByteArrayView path(module->dlpi_name);
        const qsizetype name = path.lastIndexOf('/') + 1;
        if (!path.sliced(name).startsWith("libicuuc.so"))
            return 0;
        *static_cast<QByteArray *>(found) = path.first(name).toByteArray();
        return 1;
    };
    ::dl_iterate_phdr(look, &folder);
    return folder;
}

} // namespace

extern "C" {

void *dlopen(const char *file, int mode) noexcept
{
    if (file && std::strncmp(file, "libicu", 6) == 0 && IsEngine(__builtin_return_address(0))) {
        // An ICU in another folder is none that this process could use beside its own.
        static const QByteArray folder = FolderOfLoadedIcu();
        if (!folder.isEmpty())
            return RealDlopen()((folder + file).constData(), mode);
    }
    return RealDlopen()(file, mode);
}

// The engine gives files to them where it runs as root. Here every file stays its maker's.
passwd *getpwnam(const char *name)
{
    return IsEngine(__builtin_return_address(0)) ? nullptr : RealGetpwnam()(name);
}

group *getgrnam(const char *name)
{
    return IsEngine(__builtin_return_address(0)) ? nullptr : RealGetgrnam()(name);
}

} // extern "C"

/// Called by FirebirdClient, so that the linker keeps this file.
void ShortenEngineSearches() {}
