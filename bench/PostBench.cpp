#include "Measures.h"
#include "Sample.h"
#include "Suites.h"
#include "stores/settings/Options.h"

#include "stores/ClientsDM.h"
#include "stores/KeloraSuttaList.h"
#include "stores/engine/Scripter.h"
#include "stores/engine/Statement.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int ExcerptBytes = 5000;

/// The client module on a file of its own with 10,000 marks, its list fetched whole as a window has it.
class OpenMarks
{
public:
    OpenMarks()
    {
        const QString path = Sample().ScratchFile(u"TARUNECLIENT.FDB"_s);
        QFile::copy(Sample().Folder() + u"TARUNECLIENT.FDB"_s, path);
        ModuleDoors doors;
        doors.exeName = Sample().Executable();
        m_appPath = std::exchange(AppPath, QFileInfo(path).path() + u'/');
        m_module = std::make_unique<TfrmClientsDM>(doors);
        m_module->DataModuleCreate();
        Run(KeloraSuttaListScript({{1101, u"Chương"_s, u"Kaṇḍaṃ"_s, {}}}));
        Run({u"SET TERM ^ ;"_s,
             u"execute block as declare I integer = 0; begin while (I < 10000) do begin I = I + 1;"
             " insert into SUTTA_TEXT_FOCUS values (:I, 'kinh', rpad('<p>', 5000, 'kinh '), 2, null, 6, 1101, "
             "current_timestamp, null); end end^"_s,
             u"COMMIT WORK^"_s});
        m_module->qryFocus.Open();
        m_module->qryFocus.FetchAll();
    }
    ~OpenMarks() { AppPath = m_appPath; }
    OpenMarks(const OpenMarks &) = delete;
    OpenMarks &operator=(const OpenMarks &) = delete;

    /// A filled row, posted: key, time, the tests before it, insert, commit, and the row read back.
    double PostTime()
    {
        TpFIBDataSet &marks = m_module->qryFocus;
        marks.Insert();
        marks.FieldByName(u"NAME_FOC"_s).SetAsString(u"một đoạn kinh"_s);
        marks.FieldByName(u"TEXT_FOC"_s).SetAsBytes(QByteArray(ExcerptBytes, 'k'));
        marks.FieldByName(u"NIK_SUT"_s).SetAsInteger(6);
        marks.FieldByName(u"NIC_SUT"_s).SetAsInteger(1101);
        QElapsedTimer clock;
        clock.start();
        marks.Post();
        m_nextKey = marks.FieldByName(u"ID_FOC"_s).AsInteger() + 1;
        return Milliseconds(clock);
    }
    /// The same row by the prepared insert and the commit alone.
    double InsertTime()
    {
        const auto &transaction = m_module->trClientTarune;
        if (!m_insert) {
            m_insert = std::make_unique<Statement>(m_module->dbClientTarune.Attachment(), transaction.Native(),
                                                   m_module->qryFocus.InsertSQL().join(u'\n'));
        }
        const QList<QVariant> values{m_nextKey++,
                                     u"một đoạn kinh"_s,
                                     QByteArray(ExcerptBytes, 'k'),
                                     2,
                                     QVariant(),
                                     6,
                                     1101,
                                     QDateTime::currentDateTime(),
                                     QVariant()};
        QElapsedTimer clock;
        clock.start();
        m_insert->Execute(transaction.Native(), values);
        m_module->trClientTarune.CommitRetaining();
        return Milliseconds(clock);
    }

private:
    void Run(const QStringList &script)
    {
        TpFIBScripter scripter;
        scripter.SetDatabase(&m_module->dbClientTarune);
        scripter.Script() = script;
        scripter.ExecuteScript();
    }

    QString m_appPath;
    std::unique_ptr<TfrmClientsDM> m_module;
    std::unique_ptr<Statement> m_insert;
    int m_nextKey = 20000;
};

} // namespace

void RegisterPostMeasures()
{
    const auto marks = std::make_shared<std::unique_ptr<OpenMarks>>();
    const auto made = [marks]() -> OpenMarks & {
        if (!*marks)
            *marks = std::make_unique<OpenMarks>();
        return **marks;
    };
    Register({.name = u"post"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.2 x plus 10 ms"_s,
              .ours = [made] { return made().PostTime(); },
              .floor = [made] { return made().InsertTime(); },
              .finish = [marks] { marks->reset(); },
              .repetitions = 31});
}
