#pragma once

#include <array>

/// Points standard input and output to nowhere. Where a backup ends early the engine prompts for its next part on the
/// process's own terminal, and waits for an answer.
class SilentStreams
{
public:
    SilentStreams();
    ~SilentStreams();
    SilentStreams(const SilentStreams &) = delete;
    SilentStreams &operator=(const SilentStreams &) = delete;

private:
    std::array<int, 2> m_kept{-1, -1};
};
