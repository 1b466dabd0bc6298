#include "lumivara-data/RecordSorter.h"

#include <QRandomGenerator>

#include <gmock/gmock.h>

#include <algorithm>

namespace {

TEST(RecordSorter, SortsMoreThanItsMemoryHolds)
{
    QRandomGenerator random(1);
    RecordSorter sorter(4000);
    std::vector<QByteArray> expected;
    for (int i = 0; i < 3000; ++i) {
        // Many share their beginning, some are the beginning of others.
        QByteArray record(random.bounded(12), 'a');
        for (char &c : record)
            c = char("\0a\xFF"[random.bounded(3)]);
        sorter.Add(record);
        expected.push_back(record);
    }
    std::sort(expected.begin(), expected.end(), [](const QByteArray &a, const QByteArray &b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                            [](char x, char y) { return uchar(x) < uchar(y); });
    });
    sorter.Sort();
    QByteArrayView record;
    for (const QByteArray &next : expected) {
        ASSERT_TRUE(sorter.Next(record));
        ASSERT_EQ(record.toByteArray(), next);
    }
    EXPECT_FALSE(sorter.Next(record));
}

} // namespace
