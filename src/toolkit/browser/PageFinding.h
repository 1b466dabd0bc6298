#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>

class FindBar;
class QWidget;
class TBrowserControl;

/// Gives F3 and Shift+F3 a meaning in the window of `place`: the next place, the one before.
void AddPlaceKeys(QWidget &place, const std::function<void(bool isBackward)> &step);

/// Finds texts in the page of a control: the bar below the page, the marks in it, and the steps from place to place.
/// Asks the page without waiting; what is asked meanwhile comes in one when the answer is there.
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
    /// Closes the bar and takes the marks away; the selection stays. False if it was not open.
    bool Close();
    bool IsOpen() const;
    /// The control has been given another page; it is complete.
    void PageLeft();
    void PageCame();

    /// Given the text that is selected, when our script has changed the selection.
    std::function<void(const QString &text)> OnSelect;

private:
    QString Text() const;
    void Ask();
    void Send(const QVariant &step);
    void Take(const QVariantMap &answer, bool isStep);

    TBrowserControl &m_control;
    QPointer<FindBar> m_bar;
    quint64 m_page = 0;
    bool m_isAsking = false;
    // What is still to be asked.
    bool m_isCounting = false;
    bool m_isTyped = false;
    int m_steps = 0;
};
