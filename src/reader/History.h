#pragma once

#include "toolkit/browser/PagePlace.h"

#include <QList>
#include <QString>

#include <optional>
#include <vector>

/// A place that a reader was at: which text (its ID_VIC, or the number of a group), in which language mode, and where.
struct Place
{
    int text = 0;
    int language = 0;
    PagePlace page;

    bool operator==(const Place &) const = default;
};

/// How another text came on show.
enum class MoveKind {
    Jump,   ///< chosen: a step
    Walk,   ///< passed with the arrow keys: a step once the reader rests there
    Reload, ///< the tree was read again: no step
};

/// The steps of a reader, back and forward. Times are milliseconds of any clock that never goes back.
class History
{
public:
    static constexpr qint64 RestTime = 2000;
    static constexpr std::size_t MostSteps = 200;

    /// Another text is on show. Where the text is that of the last step, it is no new one.
    void Moved(const Place &to, MoveKind kind, qint64 now);
    /// A step to a place in any text, also in that of the last step.
    void Add(const Place &to, qint64 now);
    /// The number of the step to which the text on show belongs, for Keep() when it is left; 0 if it is no step.
    int StepOnShow(qint64 now);
    /// The place at which a step was left; nothing if the step is forgotten.
    void Keep(int step, const Place &left);

    /// Whether there is a step to go to.
    bool CanGoBack(qint64 now);
    bool CanGoForward(qint64 now);
    /// The place to go to. From a text that is no step, back leads to the last step. The caller goes there, or asks on.
    std::optional<Place> Back(qint64 now);
    std::optional<Place> Forward(qint64 now);
    /// Tells which text is on show, where a place could not be reached.
    void Shows(int text) { m_shown = text; }

private:
    struct Step
    {
        int number;
        Place place;
    };
    struct Walk
    {
        Place place;
        qint64 since;
    };
    void EndWalk(qint64 now);
    bool IsOnStep() const;
    void Push(const Place &place);
    Place GoTo(std::size_t at);

    std::vector<Step> m_steps;
    std::size_t m_at = 0; ///< the last step; only where there are any
    int m_lastNumber = 0;
    int m_shown = 0;
    std::optional<Walk> m_walk;
};

/// The last place in each of the texts that a reader left, the text left last in front.
class PlaceStore
{
public:
    static constexpr qsizetype MostTexts = 200;

    PlaceStore() = default;
    /// From what Stored() gave; whatever is no place in there is left out.
    explicit PlaceStore(const QString &stored);

    /// Keeps where a text was left; that of the text left longest ago goes where there are too many.
    void Keep(const Place &place);
    std::optional<PagePlace> PlaceIn(int text) const;
    /// The texts, the one left last in front.
    QList<int> Texts() const;
    /// All of it as one text, for the constructor.
    QString Stored() const;

private:
    QList<Place> m_places;
};
