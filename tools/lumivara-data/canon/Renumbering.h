#pragma once

#include <QHash>
#include <QString>

#include <functional>
#include <optional>

/// New keys for the texts of a canon and for the marks on them: the new canon, a journal of old and new keys, and the
/// file of marks change so that after a kill at any step the next run brings it to its end, or takes it back. The old
/// files stay beside the new ones, under their names and ".before". No old key is one of the new ones, so what has been
/// changed shows by itself, and changing it once more changes nothing.
class Renumbering
{
public:
    struct Journal
    {
        QString marks;           ///< the file, by its full path
        bool keepsNames = false; ///< of the list of texts
        QHash<int, int> keys;    ///< old, new
    };
    /// Moves marks and list to the new keys, in one transaction; throws where nothing was changed.
    using ChangeMarks = std::function<void(const Journal &)>;
    /// Called before each step.
    using StepDoor = std::function<void()>;

    /// Whoever calls what changes files holds the lock of the canon's file.
    explicit Renumbering(const QString &canon, StepDoor door = [] {});

    /// The name under which the new canon waits, complete.
    QString NextPath() const { return m_canon + QStringLiteral(".next"); }
    /// True if something of a renumbering that has not come to its end is there.
    bool IsUnfinished() const;
    /// Its journal, if it had come so far. Throws ToolError for one that can't be read.
    std::optional<Journal> Found() const;

    /// With the new canon at NextPath(). A failure before the marks are changed takes all back and is thrown on.
    void Run(const Journal &journal, const ChangeMarks &changeMarks);
    /// Brings one with a journal to its end.
    void GoOn(const Journal &journal, const ChangeMarks &changeMarks);
    /// Removes what there is of one without a journal.
    void TakeBack();

private:
    QString JournalPath() const { return m_canon + QStringLiteral(".renumbering"); }
    void KeepMarks(const QString &marks);
    void Write(const Journal &journal);
    void PutInPlace();

    QString m_canon;
    StepDoor m_door;
};
