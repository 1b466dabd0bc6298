#include "presentation/languages/Locales.h"

#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Locales, RowsAreFoundByTheirNumberAlone)
{
    const LocaleRow cases[]{
        {1066, "vi-VN", "Vietnamese (Vietnam)", "Vietnamese", "Tiếng Việt (Việt Nam)"},
        {1103, "sa-IN", "Sanskrit (India)", "Sanskrit", "संस्कृत भाषा (भारतः)"},
        {9242, "sr-Latn-RS", "Serbian (Latin, Serbia)", "Serbian (Latin)", "srpski (latinica, Srbija)"},
        {0x0004, "zh-Hans", "Chinese (Simplified)", "Chinese (Simplified)", "中文（简体）"}};
    for (const LocaleRow &expected : cases) {
        const LocaleRow *row = FindLocale(expected.id);
        ASSERT_NE(row, nullptr) << expected.id;
        for (const auto name :
             {&LocaleRow::tag, &LocaleRow::englishName, &LocaleRow::shortName, &LocaleRow::nativeName})
            EXPECT_STREQ(row->*name, expected.*name);
    }
    for (const quint16 unknown : {0, 1024, 0x7C44, 0xFFFF})
        EXPECT_EQ(FindLocale(unknown), nullptr) << unknown;
}

TEST(Locales, EveryRowIsWhole)
{
    const QRegularExpression tagForm(
        u"^[a-z]{2,3}(-[A-Z][a-z]{3})?(-([A-Z]{2}|[0-9]{3}|ploc))?(-valencia|_tradnl)?$"_s);
    QSet<QString> tags;
    for (const LocaleRow &row : LocaleRows()) {
        tags.insert(QString::fromUtf8(row.tag));
        EXPECT_TRUE(tagForm.match(QString::fromUtf8(row.tag)).hasMatch()) << row.tag;
        EXPECT_EQ(FindLocale(row.id), &row);
        for (const char *name : {row.englishName, row.shortName, row.nativeName}) {
            const QString text = QString::fromUtf8(name);
            EXPECT_FALSE(text.isEmpty() || text != text.trimmed() || text.contains(u'\xFFFD')) << row.tag;
        }
    }
    EXPECT_EQ(tags.size(), 273);
}
