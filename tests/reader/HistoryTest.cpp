#include "reader/History.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qt::StringLiterals;

namespace {

Place At(int text, int block = 0)
{
    return {text, 1, {block, 0, 0.25, u"1.%1"_s.arg(block)}};
}

/// Does what the letters say, "j1101" jumps, "w" walks, "r" reloads, "<" and ">" travel, "+" rests; tells where each of
/// the travels led, "-" for nowhere.
class Way : public testing::Test
{
protected:
    std::string Do(const QString &moves)
    {
        std::string led;
        const auto tell = [&](const std::optional<Place> &place) {
            led += place ? std::to_string(place->text) + ' ' : "- ";
        };
        for (const QString &move : moves.split(u' ')) {
            const int text = move.mid(1).toInt();
            ++now;
            switch (move.front().unicode()) {
            case 'j':
                history.Moved(At(text), MoveKind::Jump, now);
                break;
            case 'w':
                history.Moved(At(text), MoveKind::Walk, now);
                break;
            case 'r':
                history.Moved(At(text), MoveKind::Reload, now);
                break;
            case '+':
                now += History::RestTime;
                break;
            case '<':
                tell(history.Back(now));
                break;
            default:
                tell(history.Forward(now));
            }
        }
        return led;
    }

    History history;
    qint64 now = 0;
};

} // namespace

TEST_F(Way, StepsAreWhatIsChosenAndWhereAWalkRests)
{
    for (const auto &[moves, led] : {
             std::pair(u"j1 < >"_s, "- - "),
             {u"j1 j2 j3 < < < > > >"_s, "2 1 - 2 3 - "},
             {u"j1 j2 j2 < <"_s, "1 - "},          // the same text again
             {u"j1 w2 w3 w4 < <"_s, "1 - "},       // none of them rested
             {u"j1 w2 w3 + j5 < < <"_s, "3 1 - "}, // the walk rested on 3
             {u"j1 w2 + < >"_s, "1 2 "},
             {u"j1 w2 w1 + j3 < <"_s, "1 - "}, // the walk came back
             {u"j1 j2 r7 < <"_s, "2 1 "},      // from a filtered tree back to the text
             {u"j1 j2 r7 r2 < <"_s, "1 - "},
             {u"j1 j2 < j3 > < <"_s, "1 - 1 - "}, // another way leaves nothing in front
         }) {
        SCOPED_TRACE(moves.toStdString());
        history = History();
        EXPECT_EQ(Do(moves), led);
    }
}

TEST_F(Way, AStepComesBackWithThePlaceAtWhichItWasLeft)
{
    Do(u"j1 j2"_s);
    const int second = history.StepOnShow(now);
    history.Add(At(2, 40), now); // within the text
    history.Keep(second, At(2, 17));
    EXPECT_EQ(history.Back(now), At(2, 17));
    EXPECT_EQ(history.Forward(now), At(2, 40));
    Do(u"w3"_s);
    EXPECT_EQ(history.StepOnShow(now), 0) << "nothing is kept for a text that is passed";
    history.Keep(0, At(9));
    EXPECT_EQ(history.Back(now), At(2, 40));
}

TEST_F(Way, KeepsTheNewestSteps)
{
    for (int text = 1; text <= int(History::MostSteps) + 5; ++text)
        Do(u"j%1"_s.arg(text));
    int steps = 0;
    std::optional<Place> last;
    while (const auto place = history.Back(now)) {
        last = place;
        ++steps;
    }
    EXPECT_EQ(steps, int(History::MostSteps) - 1);
    EXPECT_EQ(last->text, 6);
}

TEST(PlaceStore, BringsBackThePlacesItWasStoredWith)
{
    PlaceStore store;
    for (int text = 1; text <= int(PlaceStore::MostTexts) + 1; ++text)
        store.Keep({text, 10, {text * 3, 1, 1.0 / text, u"2.%1"_s.arg(text)}});
    store.Keep(At(7, 5));
    const PlaceStore again(store.Stored());
    EXPECT_EQ(again.Texts().size(), PlaceStore::MostTexts);
    EXPECT_EQ(again.Texts().first(), 7);
    EXPECT_EQ(again.PlaceIn(7), At(7, 5).page);
    EXPECT_EQ(again.PlaceIn(9), (PagePlace{27, 1, 1.0 / 9, u"2.9"_s}));
    EXPECT_EQ(again.PlaceIn(1), std::nullopt) << "the oldest goes";
}

TEST(PlaceStore, LeavesOutWhatIsNoPlace)
{
    for (const char *stored : {"", "[", "{}", "[1,2]", "[[0,1,2,0,0.5,\"\"],[\"x\"],[]]"})
        EXPECT_TRUE(PlaceStore(QString::fromUtf8(stored)).Texts().isEmpty()) << stored;
    const PlaceStore odd(u"[[5,1,-3,-1,9,7],[5,1,8,0,0,\"\"],[6]]"_s);
    EXPECT_EQ(odd.Texts(), (QList<int>{5, 6}));
    EXPECT_EQ(odd.PlaceIn(5), (PagePlace{0, 0, 1, QString()}));
}
