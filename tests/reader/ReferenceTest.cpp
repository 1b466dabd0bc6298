#include "reader/Reference.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Reference, ReadsWhatItWrites)
{
    for (const auto &[written, text, place] : {
             std::tuple(u"1101:1"_s, 1101, PagePlace{0, 0, 0, {}}),
             {u"1101:12"_s, 1101, PagePlace{11, 0, 0.4, {}}},
             {u"9971:1.2"_s, 9971, PagePlace{30, 0, 0, u"1.2"_s}},
         }) {
        EXPECT_EQ(ReferenceTo(text, place), written);
        const auto read = ReadReference(written);
        ASSERT_TRUE(read && read->place) << written.toStdString();
        EXPECT_EQ(ReferenceTo(read->text, *read->place), written);
    }
    EXPECT_EQ(ReadReference(u"1101:12"_s)->place->block, 11) << "for a page without ids";
    EXPECT_EQ(ReadReference(u" 1101 "_s), (Reference{1101, std::nullopt}));
    EXPECT_EQ(ReadReference(u" 1101 : 4 "_s)->place->segment, u"4"_s);
    for (const QString &other : {u""_s, u"x"_s, u"1101:"_s, u":12"_s, u"1101:a"_s, u"1101:1.2."_s, u"99999999999"_s})
        EXPECT_FALSE(ReadReference(other)) << other.toStdString();
}

TEST(Reference, FindsNamesInAnyLanguageWithoutTheirMarks)
{
    const QList<KeloraText> texts{{1101, u"Giới thứ nhất"_s, u"Paṭhama"_s, u"First defeat"_s},
                                  {1102, u"Đại phẩm"_s, u"Mahāvagga"_s, QString()},
                                  {1203, u"Chương đại"_s, u"Verañjakaṇḍaṃ"_s, QString()}};
    const auto found = [&](const QString &typed, qsizetype most = 9) {
        QString numbers;
        for (const Candidate &text : CandidatesFor(typed, texts, most))
            numbers += QString::number(text.number) + u' ';
        return numbers.toStdString();
    };
    EXPECT_EQ(found(u"veranjakandam"_s), "1203 ");
    EXPECT_EQ(found(u"GIOI  thu"_s), "1101 ");
    EXPECT_EQ(found(u"DEFEAT"_s), "1101 ");
    EXPECT_EQ(found(u"đại"_s), "1102 1203 ") << "a name that begins so comes first";
    EXPECT_EQ(found(u"110"_s), "1101 1102 ");
    EXPECT_EQ(found(u"a"_s, 2).size(), 10u);
    EXPECT_EQ(CandidatesFor(u"maha"_s, texts, 9).first().name, u"Mahāvagga"_s) << "not that of the interface";
    EXPECT_EQ(found(u"zz"_s) + found(u"  "_s), "");
}

TEST(Reference, PutsTheSourceIntoTheTemplate)
{
    const Source source{u"Tạng Luật"_s, u"{reference} %1"_s, u"1101:12"_s, u"Pāli"_s};
    EXPECT_EQ(SourceText(u"({collection}, {name} {reference}, {language})"_s, source),
              u"(Tạng Luật, {reference} %1 1101:12, Pāli)"_s);
    EXPECT_EQ(SourceText(u"{no} {reference"_s, source), u"{no} {reference"_s);
}
