#include "reader/CommandRules.h"

#include <gmock/gmock.h>

TEST(CommandRules, EnableByTheFacts)
{
    for (int bits = 0; bits < 8; ++bits) {
        const bool selection = bits & 1, clients = bits & 2, dictionary = bits & 4;
        const ReaderFacts facts{selection, clients, dictionary};
        EXPECT_TRUE(MayCopy(facts) == selection && MayBrowseMarks(facts) == clients && MayLookUp(facts) == dictionary);
        EXPECT_EQ(MayMarkSelection(facts), selection && clients) << bits;
        EXPECT_EQ(MayOpenDictionary(facts), dictionary) << bits;
    }
}
