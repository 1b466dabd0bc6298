#pragma once

#include "lumivara-data/files/RecordSorter.h"

#include <QByteArray>
#include <QString>

#include <vector>

class Report;

/// Forms with the words that they come of, in any number and fixed memory. They are sorted twice on disk: by their
/// words, to be met by the words of the dictionary as these are stored, and by themselves.
class FormSorter
{
public:
    /// More words than any look-up shows.
    static constexpr qsizetype MostWordsOfForm = 24;

    /// A form of 1 to 63 UTF-16 units as look-ups ask for it, and its word as the list has it.
    void Add(int kind, const QString &form, const QString &word);
    qsizetype Count() const { return m_byWord.Count(); }

    /// Ends the adding.
    void SortByWord();
    /// Keeps the forms of a word; those of words before it are of no word, which is told. Words come in the order of
    /// kind, sort key and bytes, all as the dictionary stores them. Without a report a form without a word throws
    /// ToolError.
    void Meet(int kind, QByteArrayView sortKey, QByteArrayView word, Report *report);
    /// Ends the meeting: what is left is of no word.
    void SortByForm(Report *report);

    struct Form
    {
        int kind = 0;
        QByteArray form, word; ///< UTF-8
        int place = 0;         ///< grows with the order of adding
    };
    /// The forms in the order of kind, form and place, each with a word once; false at the end. `report` is told where
    /// a form has too many words.
    bool Next(Form &form, Report *report);

private:
    bool NextByWord();
    void TellWithoutWord(Report *report) const;

    /// Little beside what the words take.
    static constexpr qsizetype Memory = 16 << 20;
    RecordSorter m_byWord{Memory}, m_byForm{Memory};
    QByteArray m_head, m_record; ///< the memory of the ones that are made
    QByteArrayView m_next;       ///< the record by word that was not met yet
    bool m_isThere = false;
    QByteArray m_lastForm; ///< with its kind in front
    std::vector<QByteArray> m_wordsOfLast;
};
