#pragma once

#include "lumivara-data/dictionary/StarDictEntries.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QtGlobal>

#include <memory>
#include <optional>
#include <vector>

class Console;
class DictTexts;
class EntryIntake;
class RecordSorter;
class Report;

/// Where the forms of a StarDict dictionary go: into the list, as words of their own, or beside it, as forms that only
/// a look-up meets. Fitting: beside it if there are more forms than words.
enum class FormPlace { Fitting, List, Beside };

/// A dictionary in the StarDict form: NAME.ifo and beside it NAME.idx or NAME.idx.gz, NAME.dict or NAME.dict.dz, and
/// NAME.syn where words have more forms. What of it cannot be used at all throws ToolError; what is wrong with a word
/// is told and the word left out.
class StarDictReader
{
public:
    /// `ifoPath` is NAME.ifo, or a folder that holds one such file.
    StarDictReader(const QString &ifoPath, Report &report);

    ~StarDictReader();
    Q_DISABLE_COPY_MOVE(StarDictReader)

    /// Throws what TakeAll() would throw before the first word, such as for a file that is missing.
    void Open();
    /// Passes every word, form and entry on. Entries are read in the order of their texts.
    void TakeAll(EntryIntake &intake, Console &console, FormPlace forms = FormPlace::Fitting);

    /// Name of a line in the description of a dictionary whose entries are in the line mark-up already.
    static constexpr char MarkUpKey[] = "lumivara-markup";

private:
    QString Beside(const QString &ending) const;
    std::optional<quint64> Told(const QHash<QByteArray, QByteArray> &values, const char *key);
    void ReadDescription();
    QString IndexPath() const;
    QString TextsPath() const;
    void ReadIndex(const QString &path, RecordSorter &words, quint64 textSize, Console &console);
    void TakeWords(RecordSorter &words, DictTexts &texts, EntryIntake &intake, Console &console);
    void TakeForms(EntryIntake &intake, Console &console, FormPlace forms);
    void PutFormsBeside(RecordSorter &forms, const QString &fileName, EntryIntake &intake, Console &console);

    Report &m_report;
    QString m_base;   ///< path without the ending
    QString m_folder; ///< that all files must stand in, without links
    QString m_index;  ///< once it is open
    std::unique_ptr<DictTexts> m_texts;
    StarDictEntries m_entryTexts;
    // As the description tells, if that is a number; only compared with what is there.
    std::optional<quint64> m_wordCount;
    std::optional<quint64> m_formCount;
    std::optional<quint64> m_indexSize;
    int m_offsetBytes = 4;
    bool m_isMarkedUp = false;
    std::vector<int> m_entries; ///< number of the entry by that of the word
};
