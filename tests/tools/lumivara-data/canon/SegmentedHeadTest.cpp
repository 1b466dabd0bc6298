#include "lumivara-data/canon/SegmentedHead.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// "title|title|title; number; above / above" of segments "place=Pāli,Vietnamese,English" parted by "|"; a heading of
/// the mark-up has "*" in front.
std::string HeadIn(const QByteArray &text)
{
    std::vector<AlignedSegment> segments;
    for (const QByteArray &line : text.split('|')) {
        const bool isHeading = line.startsWith('*');
        const QByteArrayList parts = line.mid(isHeading ? 1 : 0).split('=');
        AlignedSegment segment{"k1:" + parts[0], {}, isHeading ? "<header><h1>{}</h1></header>" : ""};
        const QByteArrayList words = parts[1].split(',');
        for (int i = 0; i < words.size(); ++i)
            segment.text[i] = words[i];
        segments.push_back(segment);
    }
    const SegmentedHead head = HeadOf(segments);
    QStringList above;
    for (const LanguageNames &names : head.above)
        above.append(names[0].isEmpty() ? names[1] + names[2] : names[0]);
    return (head.titles[0] + '|' + head.titles[1] + '|' + head.titles[2]).toStdString() + "; " +
           head.number.toStdString() + "; " + above.join(u" / "_s).toStdString();
}

TEST(SegmentedHead, TheTitleIsTheLastOfTheHeadAndWhatIsAboveNamesTheGroups)
{
    const std::pair<QByteArray, std::string> rows[]{
        {"0.1=Majjhima Nikāya 118,Trung Bộ 118,MN 118|0.2=Ānāpānassatisutta,Kinh,Mindfulness|1.1=Evaṃ",
         "Ānāpānassatisutta|Kinh|Mindfulness; 118; Majjhima Nikāya"},
        {"0.1=Theravāda Vinaya|0.2=Mahāvibhaṅga|0.3=Pārājikakaṇḍa|0.4=1. Paṭhama|1.1=Tena",
         "1. Paṭhama||; ; Theravāda Vinaya / Mahāvibhaṅga / Pārājikakaṇḍa"},
        {"0.1=Saṁyutta Nikāya 1.2|0.2=1. Naḷavagga|0.3=2. Nimokkha", // not the group's number
         "2. Nimokkha||; 1.2; Saṁyutta Nikāya / 1. Naḷavagga"},
        {"0.1=A|0.2=3. B|0.3=C", "C||; 3; A / 3. B"},
        {"0.1=A 1|0.2= ,Hai|1.1=B", "A 1||; ; "}, // the last in Pāli, and nothing else in its place
        {"0.1=,Một|0.2=,Hai,Two", "|Hai|Two; ; Một"},
        {"0=A|0.1=B|1.0=C|10.1=D", "B||; ; A"},
        {"1.1=A", "||; ; "},
        {"0.1=Nikāya 5|*0.2=Title,Tên|*1.0=Section", "Title|Tên|; 5; Nikāya"},
    };
    for (const auto &[text, head] : rows)
        EXPECT_EQ(HeadIn(text), head) << text.constData();
}

TEST(SegmentedHead, GroupsAreNamedByWhatTheirTextsShareAndOthersDoNot)
{
    const auto above = [](const char *names) {
        QList<LanguageNames> list;
        for (const QString &name : QString::fromUtf8(names).split(u'/', Qt::SkipEmptyParts))
            list.append({name, name == u"Dīgha"_s ? u"Trường"_s : QString(), {}});
        return list;
    };
    struct Case
    {
        const char *rule;
        QList<std::pair<const char *, const char *>> texts; ///< group, what is above
        std::string names;                                  ///< "path=name" parted by "|"
    };
    const Case cases[]{
        {"level by level",
         {{"vin/vb/pj", "Vinaya/Vibhaṅga/Pārājika"},
          {"vin/vb/ss", "Vinaya/Vibhaṅga/Saṅgha"},
          {"vin/kd", "Vinaya/Khandha"},
          {"dn", "Dīgha"}},
         "dn=Dīgha·Trường|vin/kd=Khandha|vin/vb/pj=Pārājika|vin/vb/ss=Saṅgha|vin/vb=Vibhaṅga|vin=Vinaya"},
        {"what all share names no group",
         {{"vb", "Vinaya/Vibhaṅga"}, {"kd", "Vinaya/Khandha"}},
         "kd=Khandha|vb=Vibhaṅga"},
        {"but a single group", {{"mn", "Majjhima"}, {"mn", "Majjhima"}}, "mn=Majjhima"},
        {"a chain from its innermost", {{"s/mn", "Majjhima"}, {"dn", "Dīgha"}}, "dn=Dīgha·Trường|s/mn=Majjhima"},
        {"nothing of its own",
         {{"sn/sn1", "Saṁyutta/A"}, {"sn/sn1", "Saṁyutta/B"}, {"sn/sn2", "Saṁyutta/C"}, {"dn", ""}},
         "sn/sn2=C|sn=Saṁyutta"},
        {"nothing in common", {{"a", "X"}, {"a", "Y"}, {"b", ""}}, ""},
    };
    for (const Case &one : cases) {
        QStringList paths;
        QList<PlacedHead> heads;
        for (const auto &[group, names] : one.texts) {
            const QStringList parts = QString::fromUtf8(group).split(u'/');
            for (qsizetype depth = 1; depth <= parts.size(); ++depth) {
                if (const QString path = parts.mid(0, depth).join(u'/'); !paths.contains(path))
                    paths.append(path);
            }
            heads.append({QString::fromUtf8(group), above(names)});
        }
        const QHash<QString, LanguageNames> names = GroupNames(paths, heads);
        QStringList told;
        for (auto name = names.cbegin(); name != names.cend(); ++name)
            told.append(name.key() + u'=' + (*name)[0] + ((*name)[1] == (*name)[0] ? QString() : u'·' + (*name)[1]));
        told.sort();
        EXPECT_EQ(told.join(u'|').toStdString(), one.names) << one.rule;
    }
}

} // namespace
