#include "stores/engine/RowStore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

Column ColumnOf(ColumnKind kind, unsigned offset)
{
    Column column{};
    column.kind = kind;
    column.offset = offset;
    column.nullOffset = offset + 8;
    return column;
}

/// A number, a text and a blob, in that order.
class RowStoreTest : public testing::Test
{
protected:
    RowStoreTest() { store.Clear(columns); }

    void ExpectRow(int row, qint64 number, const QString &text, const QByteArray &blob)
    {
        EXPECT_TRUE(store.Value(row, 0) == number && store.Value(row, 1) == text && store.Value(row, 2) == blob) << row;
    }

    const std::vector<Column> columns{ColumnOf(ColumnKind::Big, 0), ColumnOf(ColumnKind::Text, 16),
                                      ColumnOf(ColumnKind::Blob, 32)};
    RowStore store;
};

} // namespace

TEST_F(RowStoreTest, NumbersOfEveryLengthComeBack)
{
    // One of a single byte less and more, wherever a shorter form ends.
    for (const qint64 number : std::initializer_list<qint64>{
             0, 1, 223, 224, 225, 255, 256, -1, -128, -129, 32767, 32768, -32768, 8388608, 1LL << 40,
             std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()}) {
        store.Append({number, u"behind"_s, "blob"_ba});
        ExpectRow(store.Count() - 1, number, u"behind"_s, "blob");
        unsigned char message[64] = {};
        std::memcpy(message, &number, sizeof number);
        message[24] = message[40] = 0xFF; // text and blob are null
        store.Append(message);
        EXPECT_EQ(store.Number(store.Count() - 1, 0), number);
        EXPECT_TRUE(store.IsNull(store.Count() - 1, 1));
        EXPECT_TRUE(store.Text(store.Count() - 1, 2).empty());
    }
}

TEST_F(RowStoreTest, RowsOfEveryLengthStayWhereTheyAre)
{
    // Short ones fill many chunks; the long ones end a chunk early, fill one, and are longer than any.
    const auto text = [](int row) { return QString(row % 300, QChar(u'ā')); };
    const auto blob = [](int row) { return QByteArray(row % 1000 == 999 ? row * 97 : row % 7, 'b'); };
    constexpr int rows = 5000;
    for (int row = 0; row < rows; ++row)
        store.Append({row, text(row), blob(row)});
    const std::string_view first = store.Text(1, 1);
    store.Append({rows, QString(65535, u't'), QByteArray(262144, 'b')});
    for (int row = 0; row < rows; ++row)
        ExpectRow(row, row, text(row), blob(row));
    EXPECT_EQ(store.Text(1, 1).data(), first.data());
    ExpectRow(rows, rows, QString(65535, u't'), QByteArray(262144, 'b'));

    store.Replace(7, {-7, u"new"_s, QByteArray(300'000, 'n')});
    store.Remove(6);
    ExpectRow(5, 5, text(5), blob(5));
    ExpectRow(6, -7, u"new"_s, QByteArray(300'000, 'n'));
    EXPECT_EQ(store.Count(), rows);
}
