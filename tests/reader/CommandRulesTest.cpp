#include "reader/CommandRules.h"

#include <gmock/gmock.h>

namespace {

struct Case
{
    const char *name;
    ReaderFacts facts;
    bool copy, mark, browseMarks, lookUp, dictionary;
};

class CommandRulesTable : public testing::TestWithParam<Case>
{};

} // namespace

TEST_P(CommandRulesTable, EnablesByTheFacts)
{
    const Case &row = GetParam();
    EXPECT_EQ(MayCopy(row.facts), row.copy);
    EXPECT_EQ(MayMarkSelection(row.facts), row.mark);
    EXPECT_EQ(MayBrowseMarks(row.facts), row.browseMarks);
    EXPECT_EQ(MayLookUp(row.facts), row.lookUp);
    EXPECT_EQ(MayOpenDictionary(row.facts), row.dictionary);
}

INSTANTIATE_TEST_SUITE_P(
    Facts, CommandRulesTable,
    testing::Values(Case{"Nothing", {false, false, false}, false, false, false, false, false},
                    Case{"SelectionAlone", {true, false, false}, true, false, false, false, false},
                    Case{"ClientsAlone", {false, true, false}, false, false, true, false, false},
                    Case{"DictionaryAlone", {false, false, true}, false, false, false, true, true},
                    Case{"SelectionAndClients", {true, true, false}, true, true, true, false, false},
                    Case{"SelectionAndDictionary", {true, false, true}, true, false, false, true, true}),
    [](const auto &info) { return std::string(info.param.name); });
