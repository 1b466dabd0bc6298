#include "common/InOrder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <stdexcept>

TEST(InOrder, KeepsTheOrderThrowsAFaultAtItsPlaceAndCanBeLeftEarly)
{
    std::array<std::atomic<bool>, 101> isMade{};
    InOrder<size_t> numbers(
        1000,
        [&](size_t at) {
            if (at < 100 && at % 3 == 0)
                isMade[at + 1].wait(false); // the later one is there first
            if (at <= 100) {
                isMade[at] = true;
                isMade[at].notify_all();
            }
            return at == 100 ? throw std::runtime_error("in the middle") : at;
        },
        [](size_t) { return 1; });
    for (size_t at = 0; at < 100; ++at)
        EXPECT_EQ(numbers.Take(), at);
    EXPECT_THROW(numbers.Take(), std::runtime_error);
    EXPECT_EQ(numbers.Take(), 101U);
}

TEST(InOrder, MakesLargeThingsNotFarAhead)
{
    std::atomic<size_t> asked = 0;
    InOrder<size_t> large(
        50,
        [&](size_t at) {
            EXPECT_LE(at, asked + 1);
            return at;
        },
        [](size_t) { return 64 * 1024 * 1024; });
    for (size_t at = 0; at < 50; ++at) {
        ++asked;
        EXPECT_EQ(large.Take(), at);
    }
}
