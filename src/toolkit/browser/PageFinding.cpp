#include "toolkit/browser/PageFinding.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/browser/FindBar.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/NamedAction.h"

#include <QBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <algorithm>
#include <utility>

namespace {

constexpr Message nextPlace{u"Đến chỗ gặp kế tiếp trong trang", u"Go to the next place in the page"};
constexpr Message priorPlace{u"Về chỗ gặp trước trong trang", u"Go to the previous place in the page"};
constexpr qsizetype mostPlaces = 20'000; ///< marked in a page; more would take seconds

void SetTabOrder(QWidget &page, QWidget &bar)
{
    // A page itself has no place in the order where Chromium's own widget stands for it.
    QWidget *last = page.focusProxy() ? page.focusProxy() : &page;
    for (const char *name :
         {"edFindText", "btnFindPrior", "btnFindNext", "cbMatchCase", "cbWholeWord", "btnFindClose"}) {
        auto *next = bar.findChild<QWidget *>(QLatin1StringView(name));
        QWidget::setTabOrder(last, next);
        last = next;
    }
}

/// Where a control stands in a layout, by itself or in a row; -1 for nowhere.
int IndexIn(const QLayout &layout, QWidget &control)
{
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem &item = *layout.itemAt(index);
        if (item.widget() == &control || (item.layout() && item.layout()->indexOf(&control) >= 0))
            return index;
    }
    return -1;
}

} // namespace

void AddPlaceKeys(QWidget &place, const std::function<void(bool isBackward)> &step)
{
    new NamedAction(QStringLiteral("keyNextPlace"), nextPlace, Qt::Key_F3, place, [step] { step(false); });
    new NamedAction(QStringLiteral("keyPriorPlace"), priorPlace, Qt::SHIFT | Qt::Key_F3, place, [step] { step(true); });
}

PageFinding::PageFinding(TBrowserControl &control) : QObject(&control), m_control(control)
{
    AddPlaceKeys(control, [this](bool isBackward) { StepByKey(isBackward); });
}

PageFinding::~PageFinding()
{
    delete m_bar;
}

bool PageFinding::IsOpen() const
{
    return m_bar && !m_bar->isHidden();
}

QString PageFinding::Text() const
{
    return m_bar ? m_bar->Text() : QString();
}

void PageFinding::Open(const QString &selection)
{
    QWidget *parent = m_control.parentWidget();
    auto *box = parent ? qobject_cast<QBoxLayout *>(parent->layout()) : nullptr;
    if (!m_bar && box) {
        m_bar = new FindBar(parent);
        m_bar->OnStep = [this](bool isBackward) {
            Begin();
            Step(isBackward);
        };
        m_bar->OnChange = [this] {
            Begin();
            m_isTyped = true;
            Ask();
        };
        m_bar->OnClose = [this] { Close(); };
        box->insertWidget(IndexIn(*box, m_control) + 1, m_bar);
    }
    if (!m_bar)
        return;
    SetTabOrder(m_control, *m_bar);
    Begin();
    const QString before = Text();
    m_bar->Open(selection);
    if (Text() != before)
        return;
    // The old text gets its marks again, but does not take the reader away.
    (selection.isEmpty() ? m_isCounting : m_isTyped) = true;
    Ask();
}

void PageFinding::Step(bool isBackward)
{
    m_steps += isBackward ? -1 : 1;
    Ask();
}

void PageFinding::StepByKey(bool isBackward)
{
    if (!OnStepKey || !OnStepKey(isBackward))
        Step(isBackward);
}

void PageFinding::PreferColoured(bool on)
{
    m_prefersColoured = on;
}

void PageFinding::Begin()
{
    m_prefersColoured = false;
    ClearPlaces();
    if (OnBegin)
        OnBegin();
}

bool PageFinding::HideBar()
{
    if (!IsOpen())
        return false;
    const bool hadFocus = m_bar->isAncestorOf(m_bar->window()->focusWidget());
    m_bar->hide();
    m_isTyped = false;
    m_isCounting = false;
    m_steps = 0;
    if (hadFocus)
        m_control.setFocus();
    return true;
}

bool PageFinding::Close()
{
    if (!HideBar())
        return false;
    m_isCounting = true;
    Ask();
    m_control.setFocus();
    return true;
}

void PageFinding::ShowPlaces(PlacesIn placesIn, qsizetype at)
{
    HideBar();
    m_places = Places{std::move(placesIn), at};
    m_isPlacing = true;
    Ask();
}

void PageFinding::ClearPlaces()
{
    if (!m_places)
        return;
    m_places.reset();
    m_isPlacing = false;
    if (m_control.IsComplete())
        MarkPlaces({}, -1);
}

void PageFinding::PageLeft()
{
    ++m_page;
    m_isAsking = false;
    m_isPlacing = false;
    m_isTyped = false;
    m_steps = 0;
    if (m_bar)
        m_bar->ClearResult();
}

void PageFinding::PageCame()
{
    // Where the reader stands in the new page is not the bar's to say.
    m_isCounting = m_isCounting || IsOpen();
    m_isPlacing = m_places.has_value();
    Ask();
}

void PageFinding::Ask()
{
    if (m_isAsking || !m_control.IsComplete())
        return;
    if (std::exchange(m_isPlacing, false))
        AskForText();
    else if (std::exchange(m_isCounting, false))
        Send(QVariant());
    else if (std::exchange(m_isTyped, false))
        Send(Text().isEmpty() ? QVariant() : QVariant(0));
    else if (m_steps != 0)
        Send(std::exchange(m_steps, 0));
}

void PageFinding::Send(const QVariant &step)
{
    m_isAsking = true;
    const bool isStep = step.toInt() != 0;
    const bool isColoured = isStep && m_prefersColoured;
    const QVariantMap finding{
        {QStringLiteral("query"), Text()},
        {QStringLiteral("matchCase"), m_bar && m_bar->IsCaseMatched()},
        {QStringLiteral("wholeWord"), m_bar && m_bar->IsWholeWord()},
        {QStringLiteral("step"), step},
        {QStringLiteral("isMarked"), IsOpen()},
        {QStringLiteral("isColoured"), isColoured},
    };
    Run(ScriptCall(u"find", {finding}), [this, isStep, isColoured](const QVariant &answer) {
        m_isAsking = false;
        Take(answer.toMap(), isStep, isColoured);
        Ask();
    });
}

void PageFinding::Run(const QString &script, const std::function<void(const QVariant &)> &take)
{
    const auto guarded = [self = QPointer<PageFinding>(this), page = m_page, take](const QVariant &value) {
        if (self && self->m_page == page)
            RunGuarded([&] { take(value); });
    };
    m_control.page()->runJavaScript(script, QWebEngineScript::ApplicationWorld, guarded);
}

void PageFinding::AskForText()
{
    m_isAsking = true;
    Run(ScriptCall(u"visibleText"), [this](const QVariant &text) {
        m_isAsking = false;
        if (m_places && !m_isPlacing)
            MarkPlaces(m_places->placesIn(text.toString()), m_places->at);
        Ask();
    });
}

void PageFinding::MarkPlaces(const QList<TextRange> &places, qsizetype at)
{
    // Of very many those around the reader's.
    const qsizetype own = std::min(at, places.size() - 1);
    const qsizetype first =
        std::clamp<qsizetype>(own - mostPlaces / 2, 0, std::max<qsizetype>(places.size() - mostPlaces, 0));
    QVariantList positions;
    for (const TextRange &place : places.mid(first, mostPlaces))
        positions << place.begin << place.end;
    const QVariantMap shown{
        {QStringLiteral("places"), positions},
        {QStringLiteral("at"), own < 0 ? -1 : own - first},
    };
    Run(ScriptCall(u"showPlaces", {shown}), [this](const QVariant &text) {
        if (!text.toString().isEmpty() && OnSelect)
            OnSelect(text.toString());
        TellMarked();
    });
}

void PageFinding::TellMarked() const
{
    if (OnMark)
        OnMark();
}

void PageFinding::Take(const QVariantMap &answer, bool isStep, bool isColoured)
{
    const int count = answer.value(QStringLiteral("count")).toInt();
    const int at = answer.value(QStringLiteral("at")).toInt();
    const QString text = answer.value(QStringLiteral("text")).toString();
    if (!text.isEmpty() && OnSelect)
        OnSelect(text);
    if (!isStep)
        TellMarked();
    if (isStep && count == 0 && !IsOpen()) {
        // Asks again, and tells that there is none.
        if (Text().isEmpty() || isColoured)
            m_control.ShowFindDialog();
        else
            Open({});
        return;
    }
    if (!IsOpen() || isColoured)
        return;
    if (count > 0 || !Text().isEmpty())
        m_bar->ShowResult(at, count);
    else
        m_bar->ClearResult();
}
