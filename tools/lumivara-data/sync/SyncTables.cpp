#include "lumivara-data/sync/SyncTables.h"

#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"

#include <QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;

namespace {

std::optional<SyncId> IdOf(const QVariant &value)
{
    return SyncId::FromHex(value.toString().toLatin1());
}

QVariant HexOf(const SyncId &id)
{
    return QString::fromLatin1(id.Hex());
}

constexpr qsizetype TraitDigits = 8;

QString TextOf(const std::array<quint32, 5> &traits)
{
    QString text;
    for (const quint32 trait : traits)
        text += u"%1"_s.arg(trait, TraitDigits, 16, QChar(u'0'));
    return text;
}

std::array<quint32, 5> TraitsOf(const QString &text)
{
    std::array<quint32, 5> traits{};
    for (size_t i = 0; i < traits.size(); ++i)
        traits[i] = text.mid(static_cast<qsizetype>(i) * TraitDigits, TraitDigits).toUInt(nullptr, 16);
    return traits;
}

/// The columns of a version's row from MARK_SYN on.
QList<QVariant> ColumnsOf(const SyncVersion &version, int key)
{
    const MarkFacts &facts = version.facts;
    return {HexOf(version.mark), key, HexOf(facts.face), facts.time, HexOf(facts.excerpt), TextOf(facts.traits)};
}

/// VERSION_SYN, MARK_SYN, ID_FOC, FACE_SYN, TIME_SYN, EXCERPT_SYN, TRAITS_SYN.
void Take(const QList<QVariant> &row, SyncMemory &memory)
{
    const auto name = IdOf(row[0]);
    if (!name)
        return;
    const auto mark = IdOf(row[1]), face = IdOf(row[3]), excerpt = IdOf(row[5]);
    if (row[2].isNull() || !mark || !face || !excerpt) {
        memory.state.past.insert(*name);
        return;
    }
    MarkFacts facts;
    facts.time = row[4].toString();
    facts.face = *face;
    facts.content = ContentOf(*face, facts.time);
    facts.excerpt = *excerpt;
    facts.traits = TraitsOf(row[6].toString());
    memory.state.live[*name] = {*mark, facts};
    memory.keys[*name] = row[2].toInt();
}

/// A file without one gets one in the open transaction.
QByteArray NameOf(DataFile &file)
{
    for (const QList<QVariant> &row : file.Rows(u"select S.NAME_SYF from MARK_SYNC_FILE S order by S.NAME_SYF"_s)) {
        if (const auto name = IdOf(row[0]))
            return name->Hex();
    }
    std::array<quint32, 4> words{};
    QRandomGenerator::system()->fillRange(words.data(), static_cast<qsizetype>(words.size()));
    const SyncId name = SyncId::Of({QByteArray(reinterpret_cast<const char *>(words.data()), sizeof words)});
    RowWriter(file, Table::MarkSyncFile, {Field::NameSyf}).Append({HexOf(name)});
    return name.Hex();
}

} // namespace

QByteArray SyncTables::Make(DataFile &file)
{
    if (!file.HasTable(Table::MarkSync) || !file.HasTable(Table::MarkSyncFile)) {
        file.Transaction().Rollback(); // a script has a transaction of its own
        file.RunSchema(u"marks-sync"_s);
        file.Transaction().SetActive(true);
    }
    const QByteArray name = NameOf(file);
    // A sync that is killed later must find what it has begun under this name.
    file.Transaction().Commit();
    return name;
}

SyncMemory SyncTables::Read(DataFile &file)
{
    SyncMemory memory;
    if (!file.HasTable(Table::MarkSync))
        return memory;
    const auto transaction = file.Transaction().Native();
    Statement select(file.Database().Attachment(), transaction,
                     u"select VERSION_SYN, MARK_SYN, ID_FOC, FACE_SYN, TIME_SYN, EXCERPT_SYN, TRAITS_SYN "
                     "from MARK_SYNC"_s);
    select.OpenCursor(transaction, {});
    RowStore row;
    while (select.Fetch()) {
        row.Clear(select.Columns());
        row.Append(select.Message());
        QList<QVariant> values;
        for (int i = 0; i < static_cast<int>(select.Columns().size()); ++i)
            values.append(row.Value(0, i));
        Take(values, memory);
    }
    return memory;
}

void SyncTables::Write(DataFile &file, const SyncMemory &before, const SyncMemory &after)
{
    const auto &attachment = file.Database().Attachment();
    const auto &transaction = file.Transaction().Native();
    Statement insert(attachment, transaction,
                     u"insert into MARK_SYNC (VERSION_SYN, MARK_SYN, ID_FOC, FACE_SYN, TIME_SYN, EXCERPT_SYN, "
                     "TRAITS_SYN) values (:VERSION, :MARK, :KEY, :FACE, :TIME, :EXCERPT, :TRAITS)"_s);
    Statement update(attachment, transaction,
                     u"update MARK_SYNC set MARK_SYN = :MARK, ID_FOC = :KEY, FACE_SYN = :FACE, TIME_SYN = :TIME, "
                     "EXCERPT_SYN = :EXCERPT, TRAITS_SYN = :TRAITS where VERSION_SYN = :VERSION"_s);
    const auto put = [&](const SyncId &name, const QList<QVariant> &columns) {
        if (before.state.Knows(name))
            update.Execute(transaction, columns + QList<QVariant>{HexOf(name)});
        else
            insert.Execute(transaction, QList<QVariant>{HexOf(name)} + columns);
    };
    for (const auto &[name, version] : after.state.live) {
        const int key = after.keys.at(name);
        const auto known = before.state.live.find(name);
        if (known == before.state.live.end() || known->second.facts != version.facts || before.keys.at(name) != key)
            put(name, ColumnsOf(version, key));
    }
    const QList<QVariant> nothing(6);
    for (const SyncId &name : after.state.past) {
        if (!before.state.past.contains(name))
            put(name, nothing);
    }
}
