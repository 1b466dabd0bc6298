#include "BenchDictionary.h"
#include "Measures.h"
#include "Sample.h"
#include "Suites.h"

#include "common/Console.h"
#include "dictionary/DictionaryWords.h"
#include "dictionary/FormFinder.h"
#include "lumivara-data/Verbs.h"
#include "lumivara-data/dictionary/TextForms.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/HtmlText.h"
#include "stores/data/FIBDataSet.h"

#include <QElapsedTimer>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int MostWords = 400'000;
constexpr int SomeForms = 200;
/// What a reach of words in a second is told for.
constexpr double RunningWords = 2000;

/// Milliseconds for the words behind a form, over a dictionary of very many words. Each form is asked of a memory
/// without answers, as the first one of a look-up is.
double FormTime()
{
    DataFile file;
    file.Open(BenchDictionaryFile(MostWords));
    // Inflected words, two of them run together, and what is no word.
    QStringList forms;
    for (int number = 0; forms.size() < SomeForms; number += MostWords / SomeForms) {
        forms.append(BenchWord(number) + u"naṁ"_s);
        forms.append(BenchWord(number) + BenchWord(number + 1) + u"ssa"_s);
        forms.append(u"x"_s + BenchWord(number) + u"q"_s);
    }
    qsizetype found = 0;
    qint64 nanoseconds = 0;
    for (const QString &form : std::as_const(forms)) {
        DictionaryWords words(file.Database(), file.Transaction());
        FormFinder finder(words);
        QElapsedTimer clock;
        clock.start();
        found += finder.WordsBehind(form, {BenchKind}).size();
        nanoseconds += clock.nsecsElapsed();
    }
    file.Close();
    if (found == 0)
        qFatal("no form has a word");
    return static_cast<double>(nanoseconds) / 1e6 / static_cast<double>(forms.size());
}

/// The Pāli page of the sample with the most running words.
struct LongText
{
    LongText()
    {
        DataFile file;
        // The product's own file is not written to.
        const QString copy = Sample().ScratchFile(u"forms-canon.fdb"_s);
        if (!QFile::copy(Sample().Folder() + u"KELORA.FDB"_s, copy))
            qFatal("the sample can't be copied");
        file.Open(copy);
        {
            TpFIBDataSet rows;
            rows.SetDatabase(&file.Database());
            rows.SetTransaction(&file.Transaction());
            rows.SelectSQL() = {u"select N.ID_VIC, N.CONTENT_VIC_PAL from KELORA_CONTENT N"_s};
            for (rows.Open(); !rows.Eof(); rows.Next()) {
                TextForms forms;
                forms.Add(TextOfHtml(QString::fromUtf8(rows.FieldByName(u"CONTENT_VIC_PAL"_s).AsBytes())));
                if (forms.Total() > words) {
                    words = forms.Total();
                    number = rows.FieldByName(u"ID_VIC"_s).AsInteger();
                }
            }
        }
        file.Close();
    }
    double Time() const
    {
        Console console(u"bench"_s);
        QElapsedTimer clock;
        clock.start();
        const int code = ParseAndRun<ParseWords>({u"--text"_s, QString::number(number), u"--kind"_s, u"8,5"_s,
                                                  u"--canon"_s, Sample().Folder() + u"KELORA.FDB"_s, u"--dictionary"_s,
                                                  Sample().Folder() + u"PALIDICT.FDB"_s, u"--out"_s,
                                                  Sample().ScratchFile(u"words.tsv"_s), u"--quiet"_s},
                                                 console);
        if (code != ExitCode::Clean)
            qFatal("the tool found no words");
        return Milliseconds(clock) * RunningWords / static_cast<double>(words);
    }

    qsizetype words = 0;
    int number = 0;
};

} // namespace

void RegisterFormsMeasures()
{
    Register({.name = u"forms"_s,
              .unit = u"ms"_s,
              .reach = u"at most 10 ms"_s,
              .ours = FormTime,
              .floor = [] { return 10.0; },
              .finish = {},
              .repetitions = 5});
    const Lazy<LongText> text{[] { return std::make_unique<LongText>(); }};
    Register({.name = u"forms-text"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1 s"_s,
              .ours = [text] { return text().Time(); },
              .floor = [] { return 1000.0; },
              .finish = text.Finish(),
              .repetitions = 5});
}
