#include "lumivara-data/files/RecordSorter.h"

#include <QRandomGenerator>

#include <gmock/gmock.h>

TEST(RecordSorter, SortsMoreThanItsMemoryHolds)
{
    QRandomGenerator random(1);
    RecordSorter sorter(4000);
    std::multiset<std::string> expected; // compares by unsigned bytes
    for (int i = 0; i < 3000; ++i) {
        // Many share their beginning, some are the beginning of others.
        std::string record(random.bounded(12), 'a');
        for (char &c : record)
            c = "\0a\xFF"[random.bounded(3)];
        sorter.Add(QByteArray::fromStdString(record));
        expected.insert(record);
    }
    sorter.Sort();
    std::vector<std::string> sorted;
    for (QByteArrayView record; sorter.Next(record);)
        sorted.push_back(record.toByteArray().toStdString());
    EXPECT_TRUE(std::ranges::equal(sorted, expected));
}
