#include "crash/CrashRow.h"
#include "crash/DieAtWrite.h"

#include "stores/ClientsDM.h"
#include "stores/KeloraSuttaList.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/Scripter.h"
#include "stores/settings/Options.h"
#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <clocale>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

// One copy of the program, as far as the marks know it: adds, edits and deletes through the client module until it is
// killed or has done its share. What it is about to do and what is done goes down the standard output, unbuffered.
//
//   crash_worker FOLDER seed                       enters the list of texts
//   crash_worker FOLDER die OWNER FIRST WRITE      operations on rows of its own, until one of them gets to that write
//   crash_worker FOLDER serve OWNER FIRST 0        an operation on rows of its own for each line of the standard input
//   crash_worker FOLDER add OWNER FIRST COUNT      COUNT new rows, and an edit after every third
//   crash_worker FOLDER dump                       title and digest of the excerpt of every row

namespace {

constexpr int MostTries = 500;
constexpr qsizetype MostRows = 80;

void Say(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    if (::write(STDOUT_FILENO, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size())
        ::_exit(4);
}

class Worker
{
public:
    /// An operation that writes so often to the file ends the process at that write; 0 for none.
    Worker(TfrmClientsDM &module, char owner, qint64 firstId, int deadlyWrite)
        : m_marks(module.qryFocus), m_owner(owner), m_nextId(firstId), m_deadly(deadlyWrite),
          m_random(static_cast<quint32>(firstId))
    {
        for (m_marks.Open(); !m_marks.Eof(); m_marks.Next()) {
            const QString title = m_marks.FieldByName(u"NAME_FOC"_s).AsString();
            if (title.startsWith(QChar::fromLatin1(owner)))
                m_rows.append(CrashRow::FromTitle(title));
        }
    }

    void DoOne()
    {
        const quint32 dice = m_random.bounded(100U);
        if (m_rows.isEmpty() || (dice < 50 && m_rows.size() < MostRows))
            Add();
        else if (dice < 80)
            Change(Any());
        else
            Remove(Any());
    }
    void AddAndChange(bool changes)
    {
        Add();
        if (changes)
            Change(Any());
    }

private:
    qsizetype Any() { return m_random.bounded(static_cast<int>(m_rows.size())); }
    template <typename Action>
    void Told(char kind, const CrashRow &row, Action action)
    {
        Say(u"begin %1 %2 %3"_s.arg(QChar::fromLatin1(kind)).arg(row.id).arg(row.version));
        DieAtWrite(m_deadly);
        for (int tries = 0;; ++tries) {
            try {
                action();
                DieAtWrite(0);
                return Say(u"end"_s);
            } catch (const DatabaseError &) {
                // The other copy was at the same key or page. The row is pending, the same post is tried again.
                if (tries == MostTries)
                    throw;
            }
        }
    }
    void Fill(const CrashRow &row)
    {
        m_marks.FieldByName(u"NAME_FOC"_s).SetAsString(row.Title(m_owner));
        m_marks.FieldByName(u"TEXT_FOC"_s).SetAsBytes(row.Excerpt());
    }
    void Add()
    {
        const CrashRow row{m_nextId++, 0};
        Told('a', row, [&] {
            if (m_marks.State() != DataSetState::Insert) {
                m_marks.Insert();
                Fill(row);
                m_marks.FieldByName(u"NIK_SUT"_s).SetAsInteger(6);
                m_marks.FieldByName(u"NIC_SUT"_s).SetAsInteger(1101);
            }
            m_marks.Post();
        });
        m_rows.append(row);
    }
    const CrashRow &StandOn(qsizetype index)
    {
        if (!m_marks.Locate(u"NAME_FOC"_s, m_rows[index].Title(m_owner)))
            throw DatabaseError(u"a row is gone"_s);
        return m_rows[index];
    }
    void Change(qsizetype index)
    {
        const CrashRow old = StandOn(index), row{old.id, old.version + 1};
        Told('e', row, [&] {
            if (m_marks.State() != DataSetState::Edit) {
                m_marks.Edit();
                Fill(row);
            }
            m_marks.Post();
        });
        m_rows[index] = row;
    }
    void Remove(qsizetype index)
    {
        Told('d', StandOn(index), [&] { m_marks.Delete(); });
        m_rows.removeAt(index);
    }

    TpFIBDataSet &m_marks;
    char m_owner;
    qint64 m_nextId;
    int m_deadly;
    QRandomGenerator m_random;
    QList<CrashRow> m_rows;
};

int Run(const QStringList &arguments)
{
    AppPath = arguments[1] + u'/';
    ModuleDoors doors;
    doors.exeName = ProductFolder() + u"Lumivara"_s;
    TfrmClientsDM module(doors);
    module.DataModuleCreate();
    if (!module.vIsOKClients)
        throw DatabaseError(u"the file does not open"_s);
    const QString &verb = arguments[2];
    if (verb == "seed"_L1) {
        TpFIBScripter script;
        script.SetDatabase(&module.dbClientTarune);
        script.Script() = KeloraSuttaListScript({{1101, u"Chương"_s, u"Kaṇḍaṃ"_s, {}}});
        script.ExecuteScript();
    } else if (verb == "dump"_L1) {
        // One moment of the file, whatever another copy deletes while its rows are read.
        module.trClientTarune.SetActive(false);
        module.trClientTarune.TRParams() = QStringList{u"read"_s, u"concurrency"_s, u"nowait"_s};
        module.trClientTarune.SetActive(true);
        for (module.qryFocus.Open(); !module.qryFocus.Eof(); module.qryFocus.Next()) {
            QByteArray digest = "unreadable"; // a row that another copy has just changed
            try {
                digest = DigestOf(module.qryFocus.FieldByName(u"TEXT_FOC"_s).AsBytes());
            } catch (const DatabaseError &) {
            }
            Say(module.qryFocus.FieldByName(u"NAME_FOC"_s).AsString() + u' ' + QString::fromLatin1(digest));
        }
    } else {
        const int amount = arguments[5].toInt();
        Worker worker(module, arguments[3].at(0).toLatin1(), arguments[4].toLongLong(), verb == "die"_L1 ? amount : 0);
        for (int row = 1; verb == "add"_L1 && row <= amount; ++row)
            worker.AddAndChange(row % 3 == 0);
        while (verb == "die"_L1 || (verb == "serve"_L1 && std::getchar() != EOF))
            worker.DoOne();
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_CTYPE, "C.UTF-8");
    try {
        return Run(QCoreApplication::arguments());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
