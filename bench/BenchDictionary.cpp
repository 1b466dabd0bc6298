#include "BenchDictionary.h"

#include "Measures.h"
#include "stores/settings/Options.h"

#include "BenchCanon.h"
#include "Painted.h"
#include "Sample.h"

#include "common/Console.h"
#include "dictionary/Dictionary.h"
#include "dictionary/DictionaryDM.h"
#include "lumivara-data/sample/SampleWriter.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/browser/BrowserControl.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <array>
#include <malloc.h>
#include <map>

namespace {

constexpr int WaitMilliseconds = 60000;
constexpr int RestMilliseconds = 300;
constexpr int WordsOfEntry = 100;
constexpr qsizetype UsualEntryBytes = 1200;

const std::array<QString, 20> Syllables{
    QStringLiteral("ka"), QStringLiteral("khī"), QStringLiteral("gu"), QStringLiteral("ghe"), QStringLiteral("ñā"),
    QStringLiteral("ṭi"), QStringLiteral("ḍha"), QStringLiteral("ṇo"), QStringLiteral("tū"),  QStringLiteral("thi"),
    QStringLiteral("da"), QStringLiteral("dhā"), QStringLiteral("ne"), QStringLiteral("pa"),  QStringLiteral("bhū"),
    QStringLiteral("mi"), QStringLiteral("yā"),  QStringLiteral("ro"), QStringLiteral("saṃ"), QStringLiteral("ho")};

} // namespace

QString BenchWord(int number)
{
    constexpr qint64 all = std::tuple_size_v<decltype(Syllables)>;
    // Five digits in a scale of twenty, spread over the whole alphabet; the factor has no divisor in common with the
    // number of words there are, so that none comes twice.
    constexpr qint64 factor = 1'234'577;
    qint64 rest = number * factor % (all * all * all * all * all);
    QString word;
    for (int syllable = 0; syllable < 5; ++syllable, rest /= all)
        word += Syllables[static_cast<size_t>(rest % all)];
    return word;
}

QByteArray BenchEntry(qsizetype bytes)
{
    QByteArray entry;
    entry.reserve(bytes + 1000);
    while (entry.size() < bytes) {
        entry += "@ saṅgha, tăng chúng hòa hợp trong giới luật\n"
                 "* danh từ nam tính, số nhiều và số ít\n"
                 "- hội chúng của các vị tỳ khưu + a community of those gone forth\n"
                 "= saṅghaṃ saraṇaṃ gacchāmi + con xin nương tựa nơi chúng tăng\n"
                 "! trong các hợp từ đứng ở trước hoặc ở sau\n"
                 "# gốc của từ và các dạng có liên hệ\n"
                 "một dòng thường không mang dấu nào ở đầu dòng\n";
    }
    return entry;
}

QString BenchDictionaryFile(int words)
{
    static const QTemporaryDir folder;
    static std::map<int, QString> made;
    QString &path = made[words];
    if (!path.isEmpty())
        return path;
    path = folder.filePath(QStringLiteral("PALIDICT-%1.FDB").arg(words));
    QList<SampleEntry> entries;
    for (int first = 0; first < words; first += WordsOfEntry) {
        // Equal entries would be stored once.
        SampleEntry entry{
            BenchKind, BenchWord(first), BenchEntry(UsualEntryBytes) + "- " + BenchWord(first).toUtf8(), {}};
        for (int number = first + 1; number < std::min(first + WordsOfEntry, words); ++number)
            entry.forms.append(BenchWord(number));
        entries.append(entry);
    }
    Sample(); // loads the engine
    Console console(QStringLiteral("bench"));
    WriteDictionary(entries, path, console);
    return path;
}

double MemoryAtEndOfList(const QString &file)
{
    BenchDictionary window(file);
    window.EndTime();
    malloc_trim(0); // what is free is not in use
    QFile account(QStringLiteral("/proc/self/smaps_rollup"));
    if (!account.open(QIODevice::ReadOnly))
        qFatal("the use of memory can't be read");
    for (const QByteArray &line : account.readAll().split('\n')) {
        if (line.startsWith("Pss:"))
            return static_cast<double>(line.mid(4).simplified().split(' ').front().toLongLong()) / 1000;
    }
    return 0;
}

BenchDictionary::BenchDictionary(const QString &file)
{
    qputenv("XDG_CONFIG_HOME", Sample().ConfigFolder().toLocal8Bit());
    for (const QString &name : {QStringLiteral("firebird"), QFileInfo(ClientLibraryPath({})).fileName()})
        QFile::link(Sample().Folder() + name, m_folder.filePath(name));
    QFile::link(file, DatabasePath());
    MakeCanon(ClientLibrary(), m_folder.filePath(QStringLiteral("KELORA.FDB")), 1, PlainPage(0));
    ModuleDoors doors;
    doors.exeName = m_folder.filePath(QStringLiteral("Lumivara"));
    doors.showMessage = [](const QString &text) { qWarning("%s", qUtf8Printable(text)); };
    doors.terminate = [] {};
    m_kelora = std::make_unique<TfrmKeloraDM>(doors);
    frmKeloraDM = m_kelora.get();
    m_kelora->DataModuleCreate();
    m_dictionary = std::make_unique<TfrmDictionaryDM>(doors);
    frmDictionaryDM = m_dictionary.get();
    m_dictionary->DataModuleCreate();
    if (!m_dictionary->vIsOKDictionary)
        qFatal("the dictionary made for measuring can't be opened");
    DictionaryKind = BenchKind;
    MultiDictionary = false;
    LastWord.clear();
    MakeWindow();
    m_window->FormCreate();
    m_window->show();
    WaitPainted();
}

BenchDictionary::~BenchDictionary()
{
    m_window.reset();
    m_dictionary.reset();
    m_kelora.reset();
    frmDictionaryDM = nullptr;
    frmKeloraDM = nullptr;
}

void BenchDictionary::MakeWindow()
{
    m_window = std::make_unique<TfrmDictionary>();
    new PaintedProbe(m_window->findChild<TBrowserControl *>(QStringLiteral("ebContentWord")), [this] {
        ++m_painted;
        if (m_tellPainted)
            m_tellPainted();
    });
}

void BenchDictionary::WaitPainted()
{
    ++m_seen;
    // A real event loop: the engine runs slowly under one that only polls.
    QEventLoop loop;
    m_tellPainted = [this, &loop] {
        if (m_painted >= m_seen)
            loop.quit();
    };
    QTimer::singleShot(WaitMilliseconds, &loop, [] { qFatal("an entry was never painted"); });
    if (m_painted < m_seen)
        loop.exec();
    m_tellPainted = nullptr;
    m_seen = m_painted;
}

QString BenchDictionary::ClientLibrary() const
{
    return ClientLibraryPath(m_folder.path() + QLatin1Char('/'));
}

QString BenchDictionary::DatabasePath() const
{
    return m_folder.filePath(QStringLiteral("PALIDICT.FDB"));
}

QString BenchDictionary::ListStatement(bool filtered) const
{
    QString sql = QStringLiteral("select e.WORD_NAME, e.DICT_TYPE from SP_GET_LIST_WORDS(?) e");
    if (filtered)
        sql += QStringLiteral(" where (e.WORD_NAME starting with ?) or  (e.WORD_NAME starting with ?)");
    return sql;
}

QString BenchDictionary::EntryStatement() const
{
    return QStringLiteral("select E.WORD_CONTENT, E.WORD_CONTENT_2 from SP_GET_WORD_CONTENT(?, ?, ?) E");
}

QString BenchDictionary::CheckStatement() const
{
    return QStringLiteral("select sp.result from sp_check_word(?, ?) sp");
}

QByteArray BenchDictionary::Page() const
{
    return m_window->vHTMLString;
}

int BenchDictionary::RowsOnScreen() const
{
    const auto *list = m_window->findChild<TcxGridDBTableView *>(QStringLiteral("gtvWords"));
    return list->viewport()->height() / list->DataRowHeight() + 1;
}

QString BenchDictionary::WordAt(int row)
{
    TDataSet &words = m_window->qryWords;
    return words.FetchUpTo(row) ? words.TextAt(row, 0) : QString();
}

double BenchDictionary::SearchTime(const QString &text)
{
    m_window->findChild<QLineEdit *>(QStringLiteral("edSearchWord"))->setText(text);
    QElapsedTimer clock;
    clock.start();
    m_window->RefreshWordList();
    WaitPainted();
    return Milliseconds(clock);
}

double BenchDictionary::LookUpTime(const QString &text)
{
    QElapsedTimer clock;
    clock.start();
    m_window->LookUp(BenchKind, text);
    WaitPainted();
    return Milliseconds(clock);
}

double BenchDictionary::OpenTime(const QString &lastWord)
{
    m_window.reset();
    m_painted = m_seen = 0;
    LastWord = lastWord;
    MakeWindow();
    // The engine starts a process for the new view, which would run beside what is measured.
    QEventLoop loop;
    QTimer::singleShot(RestMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    QElapsedTimer clock;
    clock.start();
    m_window->FormCreate();
    const double time = Milliseconds(clock);
    m_window->show();
    WaitPainted();
    return lastWord.isEmpty() || LastWord == lastWord ? time : -1;
}

double BenchDictionary::KeyTime(const char *widget, Qt::Key key)
{
    auto *receiver = m_window->findChild<QWidget *>(QLatin1String(widget));
    auto *list = m_window->findChild<TcxGridDBTableView *>(QStringLiteral("gtvWords"));
    QElapsedTimer clock;
    clock.start();
    QTest::keyClick(receiver, key);
    list->viewport()->repaint();
    return Milliseconds(clock);
}

double BenchDictionary::EndTime()
{
    SearchTime({});
    return KeyTime("gtvWords", Qt::Key_End);
}
