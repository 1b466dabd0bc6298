#pragma once

#include "lumivara-data/canon/CanonWriter.h"
#include "lumivara-data/canon/KeyPlan.h"

#include <QHash>
#include <QSet>

class Console;
class Report;

/// Puts the texts of a source beside those of the canon that is there. A text that both have, known by its source, or
/// without one by key and names, is renewed: it keeps its key, its number and its group. All other texts stay as they
/// are. New ones stand in their order between the known ones around them, else behind all of their group, and groups
/// that the canon lacks behind its own.
class CanonAddition
{
public:
    /// Takes the lock of the canon's file. REQUIRES: it exists. Throws ToolError.
    explicit CanonAddition(const QString &target);
    ~CanonAddition();

    /// Where the source has to be made into a canon of its own first; the file goes with this object.
    QString SourcePath() const;
    /// Nothing new gets this key.
    void Reserve(int key) { m_plan.Reserve(key); }
    /// Writes both into a new file, which takes the place of the old one. Throws ToolError where one of them can't be
    /// read whole, and leaves the old file unchanged.
    void Run(Report &report, Console &console);
    /// All rows that were written.
    const CheckedCanon &Rows() const { return m_writer.Rows(); }

private:
    /// A text of the canon that is there.
    struct Known
    {
        int group = 0;
        int key = 0;
        std::optional<int> number;
        bool hasPage[CanonText::Pages] = {};
    };
    /// A text of the source; what it becomes.
    struct Added
    {
        int sourceGroup = 0;
        int sourceKey = 0;
        QString source;
        qsizetype known = -1; ///< that it renews
        int group = 0;
        int key = 0;
        std::optional<int> number = {};
    };
    /// Places of texts in reading order, those of both kinds.
    struct Place
    {
        bool isKnown = false;
        qsizetype at = 0;
    };

    void ReadSource();
    void CopyKnown(Report &report, Console &console);
    void TakeKnown(const QList<QVariant> &row);
    void PlanGroups();
    QSet<int> WantedGroups() const;
    void PlaceGroup(int sourceKey);
    int NewGroupKey();
    QList<Place> InReadingOrder() const;
    std::optional<int> OwnKey(const Added &text);
    void PlanTexts(Report &report);
    void WriteAdded(Report &report, Console &console);

    QString m_target;
    CanonWriter m_writer;
    KeyPlan m_plan;

    QList<CanonGroup> m_groups; ///< of the canon, the new ones among them
    QList<Known> m_known;
    QHash<int, QString> m_knownSources; ///< by key; at last those whose texts are gone
    QSet<int> m_keys;                   ///< of all texts
    QHash<QString, int> m_gone;         ///< the keys of these, by source
    QSet<QString> m_treeKeys;           ///< of the tree's rows
    QSet<qint64> m_groupNumbers;        ///< that the groups have in the tree
    QHash<QString, int> m_byNames;      ///< the canon's own groups
    int m_lastGroup = 0;

    QHash<int, CanonGroup> m_sourceGroups; ///< by key
    QList<Added> m_added;                  ///< by key
    QSet<int> m_sourceKeys;
    QHash<QString, QList<qsizetype>> m_byIdentity;
    QHash<int, int> m_groupOf; ///< the group of the canon that one of the source has become
};
