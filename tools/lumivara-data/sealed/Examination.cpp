#include "lumivara-data/sealed/Examination.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/sealed/SealedRun.h"
#include "stores/engine/DatabaseError.h"

#include <QFile>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

/// Why a file may not be opened as it is; empty if it may.
struct Doubts
{
    QString refusal; ///< not even as a copy
    QString copying;
};

Doubts DoubtsAbout(SealedRun &run, const StoredFile &facts)
{
    Doubts doubts;
    if (facts.namesFiles)
        doubts.copying = Sentence({u"nó dẫn đến bản bóng hoặc tệp khác", u"it names shadows or other files"});
    if (facts.WantsTooMuchCache())
        doubts.copying =
            Sentence({u"nó đòi bộ nhớ đệm %1 MB", u"it asks for a cache of %1 MB"}).arg(facts.cacheBytes >> 20);
    run.takeValue = [&doubts](const QString &key, const QString &thing) {
        if (key == Ability::Dynamic)
            doubts.copying = thing + Sentence({u" tự tạo câu lệnh khi chạy", u" composes statements when it runs"});
        else if (key == Ability::ForeignCode)
            doubts.refusal = thing + Sentence({u" là mã nằm ngoài tệp", u" is code outside of the file"});
    };
    Report ignored;
    run.Run(u"examine"_s, {}, ignored);
    return doubts;
}

/// Gives the copy a place where it stays.
Verdict KeepCopy(const SealedRun &run, const QString &reason, const ExaminedFiles &memory)
{
    const QString path = memory.Folder() + u"/copy-%1.fdb"_s.arg(QUuid::createUuid().toString(QUuid::WithoutBraces));
    QFile copy(run.CopyPath());
    if (!copy.setPermissions(QFile::ReadOwner) || !copy.rename(path))
        return {Verdict::Manner::NotAtAll,
                {},
                Sentence({u"%1, và không có chỗ cho bản sao riêng", u"%1, and there is no place for a private copy"})
                    .arg(reason)};
    return {Verdict::Manner::AsCopy, path, reason};
}

Verdict Examined(const QString &path, bool mayBeCopied, const ExaminedFiles &memory, Console &console)
{
    const QString base = memory.MakeFolder() ? memory.Folder() : QString();
    SealedRun run(path, console, base);
    const StoredFile facts = run.PrepareDatabase();
    const Doubts doubts = DoubtsAbout(run, facts);
    if (!doubts.refusal.isEmpty())
        return {Verdict::Manner::NotAtAll, {}, doubts.refusal};
    if (doubts.copying.isEmpty())
        return {Verdict::Manner::AsItIs};
    if (!mayBeCopied)
        return {Verdict::Manner::NotAtAll, {}, doubts.copying};
    return KeepCopy(run, doubts.copying, memory);
}

} // namespace

Verdict VerdictOn(const QString &path, bool mayBeCopied, ExaminedFiles &memory, Console &console)
{
    if (const auto known = memory.Find(path); known && (mayBeCopied || known->manner != Verdict::Manner::AsCopy))
        return *known;
    const FileStamp stamp = FileStamp::Of(path);
    Verdict verdict;
    try {
        verdict = Examined(path, mayBeCopied, memory, console);
        verdict.stamp = stamp;
        memory.Remember(path, verdict);
    } catch (const std::exception &error) {
        ThrowIfInterrupted();
        // Not remembered: it may be a full disk.
        verdict = {Verdict::Manner::NotAtAll, {}, QString::fromUtf8(error.what()), stamp};
    }
    return verdict;
}

QString OpenablePath(const QString &path, bool mayBeCopied, Console &console)
{
    ExaminedFiles memory(ExaminedFiles::UsualFolder());
    const Verdict verdict = VerdictOn(path, mayBeCopied, memory, console);
    if (verdict.manner == Verdict::Manner::NotAtAll)
        throw ToolError(verdict.reason.startsWith(path) ? verdict.reason : u"%1: %2"_s.arg(path, verdict.reason));
    return verdict.manner == Verdict::Manner::AsCopy ? verdict.copy : path;
}
