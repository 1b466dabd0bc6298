#include "lumivara-data/canon/CanonBefore.h"

#include "base/Messages.h"
#include "common/Interrupt.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/canon/CanonRows.h"
#include "lumivara-data/sealed/SealedRun.h"
#include "lumivara-data/sealed/SealedStream.h"
#include "stores/Schema.h"
#include "stores/examination/ExaminedFiles.h"
#include "stores/examination/StoredFile.h"

#include <QFileInfo>
#include <QHash>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using TakeRow = std::function<void(const QString &table, const QList<QVariant> &row)>;

/// Rows of texts (key, names in Pāli, Vietnamese, English) and then of sources (key, source).
void EachTrait(DataFile &file, const TakeRow &take)
{
    if (!IsCanon(file))
        throw ToolError(Sentence({u"đây không phải là kho kinh sách", u"it is no canon"}));
    for (const QList<QVariant> &row :
         file.Rows(u"select first %1 N.ID_VIC, N.NAME_VIC_PAL, N.NAME_VIC_VIE, N.NAME_VIC_ENG from KELORA_CONTENT N "
                   "where N.ID_VIC is not null"_s.arg(MostKnownTexts)))
        take(Table::KeloraContent, row);
    for (const auto &[key, source] : KnownSources(file))
        take(Table::KeloraSource, {key, source});
}

bool KeepsRowsAlone(const QString &path)
{
    const auto known = ExaminedFiles(ExaminedFiles::UsualFolder()).Find(path);
    // One that can be written could be open in a process with other locks.
    return known && known->manner == Verdict::Manner::AsItIs && ReadStoredFile(path).isReadOnly;
}

void ReadTraits(const QString &path, const TakeRow &take, Console &console)
{
    if (KeepsRowsAlone(path)) {
        DataFile file;
        file.Open(path);
        EachTrait(file, take);
        file.Close();
        return;
    }
    SealedRun run(path, console);
    run.PrepareDatabase();
    run.takeRow = take;
    Report ignored;
    run.Run(u"traits"_s, {}, ignored);
}

} // namespace

QList<TextTraits> TextsBefore(const QString &path, Report &report, Console &console)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return {};
    QList<TextTraits> texts;
    QHash<int, qsizetype> places;
    const auto take = [&](const QString &table, const QList<QVariant> &row) {
        const int key = row.value(0).toInt();
        if (table == QString(Table::KeloraContent)) {
            places.insert(key, texts.size());
            texts.append({key, {}, {row.value(1).toString(), row.value(2).toString(), row.value(3).toString()}});
        } else if (const auto place = places.constFind(key); place != places.cend()) {
            texts[*place].source = row.value(1).toString();
        } else {
            texts.append({key, row.value(1).toString(), {}, false});
        }
    };
    try {
        ReadTraits(info.absoluteFilePath(), take, console);
    } catch (const std::exception &error) {
        ThrowIfInterrupted();
        report.Note(path, Sentence({u"không bài nào giữ được khóa, vì không đọc được tệp trước đó: %1",
                                    u"no text keeps its key, because the file before cannot be read: %1"})
                              .arg(QString::fromUtf8(error.what())));
        return {};
    }
    return texts;
}

void RememberMade(const QString &path)
{
    ExaminedFiles(ExaminedFiles::UsualFolder()).Remember(path, {Verdict::Manner::AsItIs, {}, {}, FileStamp::Of(path)});
}

void SendTraits(DataFile &file, SealedStream &stream)
{
    EachTrait(file, [&stream](const QString &table, const QList<QVariant> &row) { stream.Row(table, row); });
}
