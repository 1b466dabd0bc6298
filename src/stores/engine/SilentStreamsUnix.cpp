#include "stores/engine/SilentStreams.h"

#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

SilentStreams::SilentStreams()
{
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (size_t i = 0; i < m_kept.size() && nowhere >= 0; ++i) {
        m_kept[i] = ::fcntl(static_cast<int>(i), F_DUPFD_CLOEXEC, 3);
        ::dup2(nowhere, static_cast<int>(i));
    }
    ::close(nowhere);
}

SilentStreams::~SilentStreams()
{
    std::fflush(stdout); // what the engine has buffered must not come later
    for (size_t i = 0; i < m_kept.size(); ++i) {
        if (m_kept[i] < 0)
            continue;
        ::dup2(m_kept[i], static_cast<int>(i));
        ::close(m_kept[i]);
    }
}
