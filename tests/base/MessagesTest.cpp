#include "base/Messages.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Messages, BeyondTheTwoLanguagesAreEnglishNothingOrWhatStood)
{
    constexpr Message message{u"Kinh", u"Text"};
    for (const auto &[language, english, none, other] : {std::tuple(0, u"Kinh"_s, u"Kinh"_s, u"Kinh"_s),
                                                         {1, u"Text"_s, u"Text"_s, u"Text"_s},
                                                         {2, u"Text"_s, QString(), u"Bài"_s},
                                                         {-1, u"Text"_s, QString(), u"Bài"_s}}) {
        EXPECT_EQ(TextOrEnglish(message, language), english) << language;
        EXPECT_EQ(TextOrNone(message, language), none) << language;
        EXPECT_EQ(TextOr(u"Bài"_s, message, language), other) << language;
    }
    EXPECT_TRUE(TextOrNone(message, 2).isNull());
}
