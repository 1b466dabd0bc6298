#pragma once

#include "base/TextRange.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

class FindBar;
class QWidget;
class TBrowserControl;

/// Gives F3 and Shift+F3 a meaning in the window of `place`: the next place, the one before.
void AddPlaceKeys(QWidget &place, const std::function<void(bool isBackward)> &step);

/// Finds texts in the page of a control: the bar below the page, the marks in it, and the steps from place to place.
/// Also shows places that the host finds. Asks the page without waiting; what is asked meanwhile comes in one when the
/// answer is there.
class PageFinding : public QObject
{
    Q_OBJECT
public:
    /// Borrows the control, which owns this.
    explicit PageFinding(TBrowserControl &control);
    ~PageFinding() override;

    /// Opens the bar below the control, in the box layout that the control is in; without one nothing happens. A
    /// selection of one line becomes the text to find.
    void Open(const QString &selection);
    /// Goes to the next or the previous place; without a text to find, from one coloured hit to another. Opens the bar
    /// if there is neither.
    void Step(bool isBackward);
    /// Whether steps go from one coloured hit to another even if the bar holds a text, until the reader seeks with the
    /// bar again.
    void PreferColoured(bool on);
    /// The key for a step.
    void StepByKey(bool isBackward);
    /// Marks places of the page and of those to come, until ClearPlaces() or until the reader seeks with the bar, which
    /// closes. `placesIn` gets the visible text. The reader is taken to the place `at`, counted from 0; none if
    /// negative.
    void ShowPlaces(PlacesIn placesIn, qsizetype at);
    /// Takes the marks of such places away.
    void ClearPlaces();
    /// Closes the bar and takes the marks away; the selection stays. False if it was not open.
    bool Close();
    bool IsOpen() const;
    /// The control has been given another page; it is complete.
    void PageLeft();
    void PageCame();

    /// Given the text that is selected, when our script has changed the selection.
    std::function<void(const QString &text)> OnSelect;
    /// The reader has begun to seek with the bar.
    std::function<void()> OnBegin;
    /// Asked first at the key for a step; true if it has been made.
    std::function<bool(bool isBackward)> OnStepKey;
    /// Other places of the page may be marked than before.
    std::function<void()> OnMark;

private:
    struct Places
    {
        PlacesIn placesIn;
        qsizetype at = -1;
    };

    QString Text() const;
    void Begin();
    void Ask();
    void Send(const QVariant &step);
    void Take(const QVariantMap &answer, bool isStep, bool isColoured);
    bool HideBar();
    void TellMarked() const;
    void AskForText();
    void MarkPlaces(const QList<TextRange> &places, qsizetype at);
    /// Runs our script and hands its value over, unless another page is shown meanwhile.
    void Run(const QString &script, const std::function<void(const QVariant &)> &take);

    TBrowserControl &m_control;
    QPointer<FindBar> m_bar;
    quint64 m_page = 0;
    bool m_isAsking = false;
    bool m_prefersColoured = false;
    std::optional<Places> m_places;
    // What is still to be asked.
    bool m_isCounting = false;
    bool m_isTyped = false;
    int m_steps = 0;
    bool m_isPlacing = false;
};
