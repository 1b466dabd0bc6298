#include "reader/ExcerptPlaces.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// "excerpt@letter" for each place.
std::string Found(const QString &page, const QStringList &excerpts, qsizetype atOnce = 1000)
{
    ExcerptFinder finder(page, excerpts);
    while (finder.Go(atOnce)) {
    }
    QString places;
    for (const ExcerptPlace &place : finder.Found())
        places += u"%1@%2 "_s.arg(place.excerpt).arg(place.letter);
    return places.trimmed().toStdString();
}

} // namespace

TEST(ExcerptPlaces, TheLettersOfAnExcerptAreWhatIsSeenOfItWithoutBlanks)
{
    for (const auto &[excerpt, letters] : {
             std::pair("\xEF\xBB\xBF<HTML>\r\n<head><title>t</title></head><body>\r\n<p>Evaṃ <b>me</b></p>",
                       u"Evaṃme"_s),
             {"a&nbsp;b&#160;&amp;&lt;c&shy;d\u200Be\u3000f", u"ab&<cdef"_s},
             {"<script>x</script><img src=a> \r\n", QString()},
             {"\xF0\x9F\x98\x80 x", u"\U0001F600x"_s},
         })
        EXPECT_EQ(LettersOfExcerpt(excerpt), letters) << excerpt;
}

TEST(ExcerptPlaces, AWrittenTextKnowsWhereItsLettersAre)
{
    WrittenText text;
    text.Add(u"\n Evaṃ\u00A0me");
    text.Add(u"\u00AD \tsutaṃ");
    text.Add(QString(200, u' ') + u"e"_s + QString(46, u' ') + u"kaṃ"_s);
    EXPECT_EQ(text.Letters(), u"Evaṃmesutaṃekaṃ"_s);
    EXPECT_EQ(text.Size(), 267);
    for (const auto &[letter, place] :
         {std::pair(0, 2), {3, 5}, {4, 7}, {6, 12}, {10, 16}, {11, 217}, {12, 264}, {14, 266}})
        EXPECT_EQ(text.PlaceOf(letter), place) << letter;
}

TEST(ExcerptPlaces, EachExcerptIsFoundWhereverItStands)
{
    const QString page = u"evaṃmesutaṃekaṃsamayaṃbhagavāverañjāyaṃviharatievaṃmesutaṃekaṃ"_s;
    for (const qsizetype atOnce : {qsizetype(1), qsizetype(7), qsizetype(1000)}) {
        EXPECT_EQ(Found(page, {u"viharati"_s, u"evaṃmesutaṃekaṃ"_s, u"samayaṃbhagavāX"_s, u""_s, u"me"_s}, atOnce),
                  "1@0 4@4 0@39 1@47 4@51");
        EXPECT_EQ(Found(page, {page, page + u'x', u"evaṃmesu"_s}, atOnce), "0@0 2@0 2@47") << "of one beginning";
    }
    EXPECT_EQ(Found(u"short"_s, {u"shorter and longer"_s, u"ort"_s}), "1@2");
    EXPECT_EQ(Found(QString(), {u"evaṃmesu"_s, u"x"_s}), "");
}

TEST(ExcerptPlaces, OfWordsThatComeAgainOnlySomeAreToldAndNoneOverlap)
{
    EXPECT_EQ(Found(QString(40, u'a'), {QString(16, u'a'), u"aaaaaaa"_s}), "0@0 1@0 1@7 1@14 0@16 1@21 1@28");
    const QString page = QString(u"saṅghamuni"_s).repeated(1000);
    for (const QString &words : {u"saṅghamuni"_s, u"muni"_s}) {
        ExcerptFinder finder(page, {words});
        while (finder.Go(3000)) {
        }
        EXPECT_EQ(finder.Found().size(), ExcerptFinder::MostPlaces) << words.toStdString();
    }
}
