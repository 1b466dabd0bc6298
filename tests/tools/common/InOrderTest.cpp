#include "common/InOrder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <stdexcept>

TEST(InOrder, KeepsTheOrderThrowsAFaultAtItsPlaceAndCanBeLeftEarly)
{
    std::array<std::atomic<bool>, 101> isMade{};
    InOrder<size_t> numbers;
    for (size_t at = 0; at < 1000; ++at) {
        numbers.Put(1, [&, at] {
            if (at < 100 && at % 3 == 0)
                isMade[at + 1].wait(false); // the later one is there first
            if (at <= 100) {
                isMade[at] = true;
                isMade[at].notify_all();
            }
            return at == 100 ? throw std::runtime_error("in the middle") : at;
        });
    }
    for (size_t at = 0; at < 100; ++at)
        EXPECT_EQ(numbers.Take(), at);
    EXPECT_THROW(numbers.Take(), std::runtime_error);
    EXPECT_EQ(numbers.Take(), 101U);
}

TEST(InOrder, HasRoomForAnyOneAndForMoreByTheirBytes)
{
    constexpr size_t megabyte = 1024 * 1024;
    InOrder<int> results;
    for (const auto &[bytes, most] : {std::pair(64 * megabyte, 1), {16 * megabyte, 1}, {6 * megabyte, 3}}) {
        int held = 0;
        for (; results.HasRoom(); ++held)
            results.Put(bytes, [held] { return held; });
        EXPECT_EQ(held, most) << bytes;
        for (int at = 0; at < held; ++at)
            EXPECT_EQ(results.Take(), at);
        EXPECT_TRUE(results.IsEmpty());
    }
}

TEST(InOrder, OneThreadBeginsNoJobBeforeTheOneBeforeHasEnded)
{
    std::atomic<int> running = 0;
    InOrder<int> results(1);
    for (int at = 0; at < 100; ++at) {
        results.Put(1, [&] {
            const int others = running++;
            std::this_thread::yield();
            --running;
            return others;
        });
    }
    while (!results.IsEmpty())
        EXPECT_EQ(results.Take(), 0);
}
