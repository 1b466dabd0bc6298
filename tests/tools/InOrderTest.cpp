#include "common/InOrder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>

TEST(InOrder, GivesThingsInTheirOrderHoweverLongTheyTake)
{
    InOrder<size_t> numbers(
        200,
        [](size_t at) {
            std::this_thread::sleep_for(std::chrono::microseconds(at % 3 == 0 ? 300 : 0));
            return at;
        },
        [](size_t) { return 1; });
    for (size_t at = 0; at < 200; ++at)
        EXPECT_EQ(numbers.Take(), at);
}

TEST(InOrder, MakesLargeThingsNotFarAhead)
{
    std::atomic<size_t> begun = 0;
    InOrder<size_t> large(
        100, [&](size_t at) { return ++begun, at; }, [](size_t) { return 64 * 1024 * 1024; });
    for (size_t at = 0; at < 100; ++at) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_LE(begun, at + 3);
        EXPECT_EQ(large.Take(), at);
    }
}

TEST(InOrder, ThrowsAFaultAtItsPlaceAndCanBeLeftEarly)
{
    InOrder<size_t> numbers(
        1000,
        [](size_t at) {
            if (at == 3)
                throw std::runtime_error("the fourth");
            return at;
        },
        [](size_t) { return 1; });
    for (size_t at = 0; at < 3; ++at)
        EXPECT_EQ(numbers.Take(), at);
    EXPECT_THROW(numbers.Take(), std::runtime_error);
    EXPECT_EQ(numbers.Take(), 4u);
}
