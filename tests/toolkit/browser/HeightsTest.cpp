#include "toolkit/browser/BrowserTest.h"

#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Paragraphs of a number and words, long enough for a view each.
QByteArray Paragraphs(int count)
{
    QByteArray page;
    for (int number = 0; number < count; ++number)
        page += "<p>" + QByteArray::number(number) + QByteArray(" evam <b>me</b>").repeated(50) + "</p>\n";
    return page;
}

class Heights : public BrowserTest
{
protected:
    QVariantMap Answer(QStringView function, const QVariant &argument)
    {
        std::optional<QVariantMap> answer;
        EXPECT_TRUE(Control().Ask(function, argument, [&](const QVariant &value) { answer = value.toMap(); }));
        EXPECT_TRUE(WaitFor([&] { return answer.has_value(); }));
        return answer.value_or(QVariantMap());
    }
    QString WrittenText()
    {
        QString text;
        for (bool isLast = false; !isLast;) {
            const QVariantMap piece = Answer(u"writtenText", double(text.size()));
            text.truncate(piece[u"from"_s].toInt());
            text += piece[u"text"_s].toString();
            isLast = piece[u"isLast"_s].toBool();
        }
        return text;
    }
    QList<double> HeightsOf(const QList<qsizetype> &characters)
    {
        QList<double> heights;
        while (heights.size() < characters.size()) {
            QVariantList rest;
            for (const qsizetype character : characters.mid(heights.size()))
                rest.append(double(character));
            for (const QVariant &height :
                 Answer(u"textHeights", QVariantMap{{u"characters"_s, rest}})[u"heights"_s].toList())
                heights.append(height.toDouble());
        }
        return heights;
    }
    /// Where a paragraph begins, as a share of the page.
    double HeightOf(int paragraph)
    {
        return Value(u"(document.querySelectorAll('p')[%1].getBoundingClientRect().top + scrollY) / "
                     "document.scrollingElement.scrollHeight"_s.arg(paragraph))
            .toDouble();
    }
};

} // namespace

TEST_F(Heights, TheTextIsWhatIsWrittenAndNothingElse)
{
    Load(
        u"<title>t</title><p>one <i>t</i>wo</p>\n<script>x</script><style>p{}</style><textarea>y</textarea><p>three"_s);
    EXPECT_EQ(WrittenText().simplified(), u"one two three"_s);
    Load(QString());
    EXPECT_EQ(WrittenText().simplified(), QString());
}

TEST_F(Heights, TellsWhereCharactersStandWhateverIsColouredOrMarked)
{
    for (const int count : {60, 2500}) { // of the longer page most paragraphs are not rendered
        SCOPED_TRACE(count);
        LoadBytes(Paragraphs(count));
        const QString page = Text(u"document.documentElement.outerHTML"_s);
        const QString text = WrittenText();
        const int middle = count / 2;
        const QList<qsizetype> asked{0, text.indexOf(u'\n' + QString::number(middle) + u' ') + 1, text.size()};
        const auto check = [&] {
            const QList<double> told = HeightsOf(asked);
            EXPECT_NEAR(told[0], HeightOf(0), 0.01);
            EXPECT_NEAR(told[1], HeightOf(middle), 0.01);
            EXPECT_EQ(told[2], -1) << "behind the end";
        };
        check();
        EXPECT_EQ(Text(u"document.documentElement.outerHTML"_s), page);
        EXPECT_GT(Control().SearchAndHighlight(u"0 evam"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 0);
        check();
        EXPECT_EQ(WrittenText(), text);
        const PagePlace place = ::PlaceOf(Answer(u"placeOfCharacter", double(asked[1])));
        EXPECT_EQ(place.block, middle);
    }
}

TEST_F(Heights, TellsWhereTheHitsAreThatThePageHasNow)
{
    LoadBytes(Paragraphs(60));
    const auto hits = [&] {
        QVariantList heights;
        for (bool isLast = false; !isLast;) {
            const QVariantMap piece = Answer(u"hitHeights", double(heights.size()));
            heights += piece[u"heights"_s].toList();
            isLast = piece[u"isLast"_s].toBool();
        }
        return heights;
    };
    EXPECT_TRUE(hits().isEmpty());
    int changes = 0;
    Control().OnPlacesChange = [&] { ++changes; };
    Control().SearchAndHighlight(u"41 evam"_s, {}, ScrollMode::None, {}, u"Yellow"_s);
    EXPECT_GT(changes, 0);
    ASSERT_EQ(hits().size(), 1);
    EXPECT_NEAR(hits().first().toDouble(), HeightOf(41), 0.01);
    EXPECT_EQ(::PlaceOf(Answer(u"placeOfHit", 0.0)).block, 41);
    changes = 0;
    Control().ShowPlaces(
        [](const QString &text) {
            const qsizetype at = text.indexOf(u"20 evam"_s);
            return QList<TextRange>{{at, at + 7}};
        },
        -1);
    EXPECT_TRUE(WaitFor([&] { return changes > 0 && hits().size() == 2; }));
    EXPECT_NEAR(hits().first().toDouble(), HeightOf(20), 0.01);
    Control().ClearPlaces();
    EXPECT_TRUE(WaitFor([&] { return hits().size() == 1; }));
    Control().OnPlacesChange = nullptr;
}
