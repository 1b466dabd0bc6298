#pragma once

#include "lumivara-data/canon/KeyPlan.h"
#include "lumivara-data/canon/Language.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <functional>

class Report;

/// A text as it is recognised in another state of its collection.
struct TextTraits
{
    int key = 0;
    QString source = {};      ///< what the collection calls it (a file, an id); empty if that is not known
    LanguageNames names = {}; ///< all empty if they are not known
    bool isThere = true;      ///< false of one that its canon had at an earlier time
};

/// Texts that are the same in two states, by their places: first by source, then by the key that earlier versions made
/// of it, then by names in Pāli and Vietnamese that no other text of either state has.
QHash<qsizetype, qsizetype> SameTexts(const QList<TextTraits> &before, const QList<TextTraits> &now);

/// The name of a source as it is kept: one that is too long is cut and has its digest at the end.
QString KeptSource(const QString &source);

/// The keys of the texts of an import: those that they had in the canon before, and new ones for new texts.
class TextKeys
{
public:
    struct Text
    {
        QString source;
        std::optional<int> given; ///< by the collection; final
    };

    /// `before` gives the texts of the canon that is replaced; it is asked when keys are wanted, so that other work can
    /// begin earlier. With `renumbers` none of them keeps its key.
    explicit TextKeys(std::function<QList<TextTraits>()> before, bool renumbers = false);

    /// Nothing new gets this key.
    void Reserve(int key) { m_plan.Reserve(key); }
    /// The same for what a group's key rules out.
    void ReserveForGroup(int group) { m_plan.ReserveForGroup(group); }
    /// The keys of texts in reading order. Throws ToolError if between two of them there are too few.
    QList<int> For(const QList<Text> &texts);
    /// Now that the texts are there with their names: those that have other sources than before and the same names.
    /// Returns the keys that they go on with, by their places.
    QHash<qsizetype, int> Recognise(const QList<TextTraits> &now);

    /// Keys that texts had before, and their new ones. No new key is one of the others: given keys that change places
    /// are left out, because nobody could tell what has been moved already.
    QHash<int, int> Moved() const;
    /// Texts that are no longer there and had a source: their keys stay theirs.
    QList<TextTraits> Gone() const;
    /// Counts and tells what became of the keys of the canon at `place`.
    void Tell(const QString &place, Report &report) const;

private:
    bool IsKept(const TextTraits &text) const;
    void Move(int from, int to);

    std::function<QList<TextTraits>()> m_read;
    QList<TextTraits> m_before;
    bool m_renumbers;
    KeyPlan m_plan;
    QSet<qsizetype> m_found; ///< of those before
    QSet<int> m_ownKeys;     ///< of the texts that are known by their sources, or have given keys
    QHash<int, int> m_moved;
    qsizetype m_keptCount = 0, m_newCount = 0, m_astrayCount = 0;
    QStringList m_byNames;
};
