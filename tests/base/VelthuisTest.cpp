#include "base/Velthuis.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(Velthuis, MakesTheLettersOfPaliAndNoOthers)
{
    int asked = 0;
    const auto niggahita = [&] {
        ++asked;
        return QChar(u'ṁ');
    };
    const auto typed = [&](const QString &keys) {
        QString text;
        for (const QChar key : keys) {
            if (const auto step = VelthuisStepAt(text, key, niggahita))
                text = (text + key).chopped(step->typed.size()) + step->letter;
            else
                text += key;
        }
        return text;
    };
    for (const auto &[keys, text] : {std::pair(u"aa ii uu ee oo"_s, u"ā ī ū ee oo"_s),
                                     {u"\"n ~n .t .d .n .l"_s, u"ṅ ñ ṭ ḍ ṇ ḷ"_s},
                                     {u"Aa AA aA Ii UU"_s, u"Ā Ā aA Ī Ū"_s},
                                     {u"\"N ~N .T .D .N .L"_s, u"Ṅ Ñ Ṭ Ḍ Ṇ Ḷ"_s},
                                     {u".h .r .s \"s ~m .b"_s, u".h .r .s \"s ~m .b"_s},
                                     {u"aaa aaaa . t"_s, u"āa āā . t"_s},
                                     {u"tt nn a a"_s, u"tt nn a a"_s}})
        EXPECT_EQ(typed(keys), text);
    EXPECT_EQ(asked, 0) << "for another letter";
    EXPECT_EQ(typed(u"dhamma.m SARA.NA.M"_s), u"dhammaṁ SARAṆAṀ"_s);
    EXPECT_EQ(asked, 2);
}

TEST(Niggahita, IsWrittenAsItMostlyStands)
{
    for (const auto &[text, letter] : {std::pair(u"dhamma"_s, u'ṃ'),
                                       {u"saṃgha dhammaṁ taṁ"_s, u'ṁ'},
                                       {u"DHAMMAṀ"_s, u'ṁ'},
                                       {u"taŋ"_s, u'ŋ'},
                                       {u"taṁ taṃ"_s, u'ṃ'}}) {
        NiggahitaCount count;
        count.Add(text);
        EXPECT_EQ(count.Letter(), QChar(letter)) << text.toStdString();
        EXPECT_FALSE(count.IsClear());
        count.Add(QString(20, u'ŋ'));
        EXPECT_TRUE(count.IsClear());
    }
}
