#include "reader/CommandRules.h"

#include <gmock/gmock.h>

TEST(CommandRules, EnableByTheFacts)
{
    const struct
    {
        ReaderFacts facts; ///< selection, clients, dictionary
        bool copy, mark, browseMarks, lookUp, dictionary;
    } rows[]{{{false, false, false}, false, false, false, false, false},
             {{true, false, false}, true, false, false, false, false},
             {{false, true, false}, false, false, true, false, false},
             {{false, false, true}, false, false, false, true, true},
             {{true, true, false}, true, true, true, false, false},
             {{true, false, true}, true, false, false, true, true}};
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(MayCopy(row.facts), row.copy);
        EXPECT_EQ(MayMarkSelection(row.facts), row.mark);
        EXPECT_EQ(MayBrowseMarks(row.facts), row.browseMarks);
        EXPECT_EQ(MayLookUp(row.facts), row.lookUp);
        EXPECT_EQ(MayOpenDictionary(row.facts), row.dictionary);
    }
}
