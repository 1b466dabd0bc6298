#include "common/InOrder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>

TEST(InOrder, KeepsTheOrderThrowsAFaultAtItsPlaceAndCanBeLeftEarly)
{
    InOrder<size_t> numbers(
        1000,
        [](size_t at) {
            std::this_thread::sleep_for(std::chrono::microseconds(at % 3 == 0 ? 300 : 0));
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
    std::atomic<size_t> begun = 0;
    InOrder<size_t> large(
        50, [&](size_t at) { return ++begun, at; }, [](size_t) { return 64 * 1024 * 1024; });
    for (size_t at = 0; at < 50; ++at) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_LE(begun, at + 3);
        EXPECT_EQ(large.Take(), at);
    }
}
