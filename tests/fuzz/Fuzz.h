#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

/// A target takes one input and may end in any way that the code under test promises. It is run by the fuzzer, which
/// makes inputs that reach new code, and by MutationTest, which spoils those of the corpus at random.
using FuzzTarget = void (*)(const QByteArray &input);

/// Targets by name, which is also the name of the corpus' folder.
std::map<std::string, FuzzTarget> &FuzzTargets();

/// FUZZ_TARGET(Name) { … } defines one; the bytes are `input`.
#ifdef LUMIVARA_FUZZ
#define FUZZ_TARGET(NAME)                                                                                              \
    static void FuzzOne(const QByteArray &input);                                                                      \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)                                  \
    {                                                                                                                  \
        FuzzOne(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));                                    \
        return 0;                                                                                                      \
    }                                                                                                                  \
    static void FuzzOne(const QByteArray &input)
#else
#define FUZZ_TARGET(NAME)                                                                                              \
    static void Fuzz##NAME(const QByteArray &input);                                                                   \
    static const auto Registered##NAME = FuzzTargets().emplace(#NAME, Fuzz##NAME);                                     \
    static void Fuzz##NAME(const QByteArray &input)
#endif

/// The first line of an input, and what follows it: two arguments out of one.
inline std::pair<QByteArray, QByteArray> FuzzedPair(const QByteArray &input)
{
    const qsizetype end = input.indexOf('\n');
    return end < 0 ? std::pair(QByteArray(), input) : std::pair(input.left(end), input.mid(end + 1));
}

/// A promise of the code under test; no target catches what this throws.
inline void Require(bool holds, const char *promise)
{
    if (!holds)
        throw std::logic_error(promise);
}
#define REQUIRE(CONDITION) Require(CONDITION, #CONDITION)
