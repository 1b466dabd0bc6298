#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// One figure and its floor, measured in turn in the same run.
struct Measure
{
    /// Name as `bench/run` takes it.
    QString name;
    /// "ms" or "MB".
    QString unit;
    /// What is to be reached, for the table.
    QString reach;
    /// Both return one sample in the measure's unit.
    std::function<double()> ours;
    std::function<double()> floor;
    /// Frees what the first sample made; may be empty.
    std::function<void()> finish;
    int repetitions = 9;
};

/// Registers a pair with the benchmark library. The two sides are sampled in turn, so that a machine whose speed drifts
/// does both alike.
void Register(const Measure &measure);

/// Runs the registered pairs whose names are given (all of them for none), prints the table and writes the JSON file
/// where a path is given: an array of {name, figure, unit, floor, ratio}, medians. False if a file can't be written.
bool RunMeasures(const QStringList &names, const QString &jsonPath);

/// Milliseconds since the clock was started.
double Milliseconds(const QElapsedTimer &clock);

/// Milliseconds that one copy of the bytes takes, the floor of what works on them.
double CopyTime(const QByteArray &bytes);

/// Megabytes by which the process grows during an action, at the highest.
double PeakGrowth(const std::function<void()> &action);

/// Makes the state of a measure at its first use.
template <typename State>
struct Lazy
{
    std::function<std::unique_ptr<State>()> make;
    std::shared_ptr<std::unique_ptr<State>> place = std::make_shared<std::unique_ptr<State>>();

    State &operator()() const
    {
        if (!*place)
            *place = make();
        return **place;
    }
    /// What frees the state.
    std::function<void()> Finish() const
    {
        return [place = place] { place->reset(); };
    }
};
