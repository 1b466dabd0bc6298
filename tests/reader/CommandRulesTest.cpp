#include "reader/CommandRules.h"

#include <gmock/gmock.h>

TEST(CommandRules, EnableByTheFacts)
{
    for (int bits = 0; bits < 32; ++bits) {
        const bool selection = bits & 1, clients = bits & 2, dictionary = bits & 4, back = bits & 8,
                   forward = bits & 16;
        const ReaderFacts facts{selection, clients, dictionary, back, forward};
        EXPECT_TRUE(MayGoBack(facts) == back && MayGoForward(facts) == forward);
        EXPECT_TRUE(MayCopy(facts) == selection && MayBrowseMarks(facts) == clients && MayLookUp(facts) == dictionary);
        EXPECT_EQ(MayMarkSelection(facts), selection && clients) << bits;
        EXPECT_EQ(MayOpenDictionary(facts), dictionary) << bits;
    }
}
