#include "lumivara-data/canon/CanonCopy.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/canon/CanonWriter.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/PageFacts.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "lumivara-data/sealed/SealedRun.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/Statement.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int RootKey = -1;

/// A statement that mends one row.
struct Repair
{
    QString place;
    QString change;
    QString sql;
    QList<QVariant> values;
    /// The page that the statement's first value is made of; empty if it is none.
    QString pageColumn = {};
};

class Repairs
{
public:
    explicit Repairs(const CheckedCanon &canon) : m_canon(canon)
    {
        OfGroups();
        OfNames();
        OfNumbers();
        OfPages();
    }
    const QList<Repair> &All() const { return m_repairs; }

private:
    static bool HasKeys(const CheckedText &text) { return text.idVit && text.idVic; }
    static QString Place(const CheckedGroup &group) { return Sentence({u"nhóm %1", u"group %1"}).arg(*group.idVit); }
    static QString Place(const CheckedText &text)
    {
        return Sentence({u"bài %1 của nhóm %2", u"text %1 of group %2"}).arg(*text.idVic).arg(*text.idVit);
    }

    void OfGroups()
    {
        QHash<int, int> parents;
        for (const CheckedGroup &group : m_canon.groups) {
            if (group.idVit)
                parents.insert(*group.idVit, group.parent.value_or(RootKey));
        }
        for (const CheckedGroup &group : m_canon.groups) {
            if (!group.idVit || *group.idVit == RootKey)
                continue;
            QString fault;
            if (!group.parent || (*group.parent != RootKey && !parents.contains(*group.parent)))
                fault = Sentence({u"thiếu nhóm cha của nó", u"its parent is missing"});
            else if (IsOnCycle(*group.idVit, parents))
                fault = Sentence({u"nó từng là nhóm trên của chính nó", u"it was its own ancestor"});
            else
                continue;
            // The next of a cycle finds it cut.
            parents[*group.idVit] = RootKey;
            m_repairs.append({Place(group),
                              Sentence({u"được đưa về gốc: ", u"put at the root: "}) + fault,
                              u"update KELORA_TREE set P_ID_VIT = :PARENT where ID_VIT = :ID"_s,
                              {RootKey, *group.idVit}});
        }
    }

    static bool IsOnCycle(int key, const QHash<int, int> &parents)
    {
        QSet<int> passed;
        int above = parents.value(key, RootKey);
        while (above != key && above != RootKey && !passed.contains(above)) {
            passed.insert(above);
            above = parents.value(above, RootKey);
        }
        return above == key;
    }

    void OfNames()
    {
        const auto isEmpty = [](const QString &name) { return name.isEmpty() && !name.isNull(); };
        for (const CheckedGroup &group : m_canon.groups) {
            if (group.idVit && isEmpty(group.nameEnglish))
                m_repairs.append(
                    {Place(group),
                     Sentence({u"NAME_VIT_ENG trống được đổi thành null", u"the empty NAME_VIT_ENG made null"}),
                     u"update KELORA_TREE set NAME_VIT_ENG = null where ID_VIT = :ID"_s,
                     {*group.idVit}});
        }
        for (const CheckedText &text : m_canon.texts) {
            if (HasKeys(text) && isEmpty(text.nameEnglish))
                m_repairs.append(
                    {Place(text),
                     Sentence({u"NAME_VIC_ENG trống được đổi thành null", u"the empty NAME_VIC_ENG made null"}),
                     u"update KELORA_CONTENT set NAME_VIC_ENG = null where ID_VIT = :GROUP_KEY and ID_VIC = :ID"_s,
                     {*text.idVit, *text.idVic}});
        }
    }

    /// In the order that the numbers give; texts without one come last.
    void OfNumbers()
    {
        QList<const CheckedText *> ordered;
        for (const CheckedText &text : m_canon.texts)
            ordered.append(&text);
        std::stable_sort(ordered.begin(), ordered.end(), [](const CheckedText *a, const CheckedText *b) {
            return a->number.value_or(INT_MAX) < b->number.value_or(INT_MAX);
        });
        for (qsizetype i = 0; i < ordered.size(); ++i) {
            const CheckedText &text = *ordered[i];
            const int number = int(i) + 1;
            if (!HasKeys(text) || text.number == number)
                continue;
            m_repairs.append(
                {Place(text),
                 Sentence({u"NUMBER_VIC nay là %1", u"NUMBER_VIC is %1 now"}).arg(number),
                 u"update KELORA_CONTENT set NUMBER_VIC = :NUMBER where ID_VIT = :GROUP_KEY and ID_VIC = :ID"_s,
                 {number, *text.idVit, *text.idVic}});
        }
    }

    /// The reader shows every page as UTF-8; what is one may say so.
    void OfPages()
    {
        for (const CheckedText &text : m_canon.texts) {
            for (const CheckedPage &page : text.pages) {
                const QByteArray &charset = page.facts.charset;
                if (!HasKeys(text) || page.facts.firstBadByte >= 0 || charset == "utf-8" || charset == "utf8")
                    continue;
                m_repairs.append(
                    {Place(text),
                     Sentence({u"bảng mã UTF-8 được khai báo trong %1", u"the charset UTF-8 declared in %1"})
                         .arg(page.column),
                     u"update KELORA_CONTENT set %1 = :PAGE where ID_VIT = :GROUP_KEY and ID_VIC = :ID"_s.arg(
                         page.column),
                     {*text.idVit, *text.idVic},
                     page.column});
            }
        }
    }

    const CheckedCanon &m_canon;
    QList<Repair> m_repairs;
};

void Make(const QList<Repair> &repairs, DataFile &file, Report &report)
{
    for (const Repair &repair : repairs) {
        QList<QVariant> values = repair.values;
        if (!repair.pageColumn.isEmpty()) {
            const auto rows =
                file.Rows(u"select N.%1 from KELORA_CONTENT N where N.ID_VIT = %2 and N.ID_VIC = %3"_s.arg(
                    repair.pageColumn, values[0].toString(), values[1].toString()));
            if (rows.size() != 1)
                continue;
            values.prepend(WithCharset(rows[0][0].toByteArray()));
        }
        Statement(file.Database().Attachment(), file.Transaction().Native(), repair.sql)
            .Execute(file.Transaction().Native(), values);
        report.Note(repair.place, repair.change);
    }
    report.Count(Sentence({u"chỗ được sửa", u"repairs"}), repairs.size());
    file.Transaction().Commit();
    file.Transaction().SetActive(true);
}

/// The copy, checked and mended; the rows if they may be put in place.
std::optional<CheckedCanon> Prove(DataFile &file, bool repair, Report &report, Console &console)
{
    CheckedCanon canon = ReadCanon(file, console);
    QList<Finding> findings = CheckCanon(canon);
    if (!findings.isEmpty()) {
        const Repairs repairs(canon);
        if (repair) {
            Make(repairs.All(), file, report);
            canon = ReadCanon(file, console);
            findings = CheckCanon(canon);
        }
    }
    for (const Finding &finding : findings)
        report.Find(finding.row, finding.fault);
    return MayStay(findings) ? std::optional(canon) : std::nullopt;
}

/// True if the source may be taken: it is a canon, and nothing is wrong with it, or something that a repair may mend.
bool IsSound(SealedRun &run, const QString &source, bool repair, Report &report)
{
    QString kind;
    qsizetype repairs = 0;
    bool isSound = false;
    run.takeValue = [&](const QString &key, const QString &value) {
        if (key == u"kind"_s)
            kind = value;
        else if (key == Sentence({u"chỗ được sửa", u"repairs"}))
            repairs = value.toLongLong();
        else if (key == u"sound"_s)
            isSound = true;
    };
    Report found;
    run.Run(u"check"_s, {}, found);
    if (kind != u"canon"_s)
        throw ToolError(Sentence({u"%1: không phải là kho kinh sách (các bảng KELORA_TREE, KELORA_CONTENT)",
                                  u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT)"})
                            .arg(source));
    if (isSound || (repair && repairs > 0))
        return true;
    if (repairs > 0)
        report.Say(
            Sentence({u"--repair sẽ sửa %1 chỗ có thể sửa được", u"--repair would change %1 things that can be mended"})
                .arg(repairs));
    report.TakeOver(found);
    return false;
}

/// Writes the source's rows, and nothing else of it; false if one can't be.
bool WriteRows(SealedRun &run, DataFile &file, Report &report)
{
    bool isWhole = true;
    RowWriter groups(file, Table::KeloraTree, GroupColumns());
    RowWriter texts(file, Table::KeloraContent, TextColumns());
    RowWriter sources(file, Table::KeloraSource, SourceColumns());
    run.takeRow = [&](const QString &table, const QList<QVariant> &row) {
        const bool isText = table == QString(Table::KeloraContent);
        try {
            (isText ? texts : table == QString(Table::KeloraSource) ? sources : groups).Append(row);
        } catch (const DatabaseError &error) {
            isWhole = false;
            report.Find(isText ? Sentence({u"bài %1 của nhóm %2", u"text %1 of group %2"})
                                     .arg(row.value(1).toString(), row.value(0).toString())
                               : Sentence({u"nhóm ", u"group "}) + row.value(0).toString(),
                        error.Text().simplified());
        }
    };
    run.takeValue = [&report](const QString &key, const QString &thing) {
        if (key == u"strange"_s)
            report.Note(thing, Sentence({u"không thuộc về kho kinh sách và bị bỏ",
                                         u"has no place in a canon and is left out"}));
    };
    Report found;
    run.Run(u"canon"_s, {}, found);
    report.TakeOver(found);
    return isWhole && found.FindingCount() == 0;
}

} // namespace

qsizetype PossibleRepairs(const CheckedCanon &canon)
{
    return Repairs(canon).All().size();
}

std::optional<CheckedCanon> CopyCanonAside(const QString &source, const QString &path, bool repair, Report &report,
                                           Console &console)
{
    if (!QFileInfo(source).isFile())
        throw ToolError(Sentence({u"%1: không phải là tệp thường", u"%1: is no regular file"}).arg(source));
    SealedRun run(source, console);
    run.PrepareDatabase();
    if (!IsSound(run, source, repair, report))
        return std::nullopt;
    std::optional<CheckedCanon> canon;
    OnFile(source, [&] {
        DataFile file;
        constexpr int pageSize = 16384;
        file.Create(path, pageSize, false);
        file.RunSchema(u"canon"_s);
        if (WriteRows(run, file, report))
            canon = Prove(file, repair, report, console);
        file.Finish(canon.has_value());
    });
    return canon;
}

std::optional<CheckedCanon> CopyCanon(const QString &source, const QString &target, bool repair, Report &report,
                                      Console &console)
{
    FileInTheMaking making(target);
    const std::optional<CheckedCanon> canon = CopyCanonAside(source, making.Path(), repair, report, console);
    if (!canon)
        return std::nullopt;
    report.Count(Sentence({u"nhóm", u"groups"}), canon->groups.size());
    report.Count(Sentence({u"bài", u"texts"}), canon->texts.size());
    qsizetype english = 0;
    for (const CheckedText &text : std::as_const(canon->texts)) {
        english += std::count_if(text.pages.cbegin(), text.pages.cend(),
                                 [](const CheckedPage &page) { return page.column == QString(Field::ContentVicEng); });
    }
    TellEnglish(english, report);
    making.Finish();
    return canon;
}

QByteArray WithCharset(const QByteArray &page)
{
    static const QRegularExpression start(u"<head\\b[^>]*>|<html\\b[^>]*>|<!doctype[^>]*>"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    constexpr qsizetype searchedBytes = 65536;
    // One byte a character keeps the places.
    const QString begin = QString::fromLatin1(page.left(searchedBytes));
    if (const auto match = DeclaredCharset().match(begin); match.hasMatch())
        return page.left(match.capturedStart(1)) + "utf-8" + page.mid(match.capturedEnd(1));
    qsizetype place = 0;
    for (auto matches = start.globalMatch(begin); matches.hasNext();) {
        const auto match = matches.next();
        place = match.capturedEnd();
        if (match.captured().startsWith(u"<head"_s, Qt::CaseInsensitive))
            break;
    }
    return page.left(place) + "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />" +
           page.mid(place);
}
