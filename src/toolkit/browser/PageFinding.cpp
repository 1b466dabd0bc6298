#include "toolkit/browser/PageFinding.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/browser/FindBar.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/NamedAction.h"

#include <QBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <utility>

namespace {

constexpr Message nextPlace{u"Đến chỗ gặp kế tiếp trong trang", u"Go to the next place in the page"};
constexpr Message priorPlace{u"Về chỗ gặp trước trong trang", u"Go to the previous place in the page"};

void SetTabOrder(QWidget &page, QWidget &bar)
{
    QWidget *last = &page;
    for (const char *name :
         {"edFindText", "btnFindPrior", "btnFindNext", "cbMatchCase", "cbWholeWord", "btnFindClose"}) {
        auto *next = bar.findChild<QWidget *>(QLatin1StringView(name));
        QWidget::setTabOrder(last, next);
        last = next;
    }
}

} // namespace

void AddPlaceKeys(QWidget &place, const std::function<void(bool isBackward)> &step)
{
    new NamedAction(QStringLiteral("keyNextPlace"), nextPlace, Qt::Key_F3, place, [step] { step(false); });
    new NamedAction(QStringLiteral("keyPriorPlace"), priorPlace, Qt::SHIFT | Qt::Key_F3, place, [step] { step(true); });
}

PageFinding::PageFinding(TBrowserControl &control) : QObject(&control), m_control(control)
{
    AddPlaceKeys(control, [this](bool isBackward) { Step(isBackward); });
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
        m_bar->OnStep = [this](bool isBackward) { Step(isBackward); };
        m_bar->OnChange = [this] {
            m_isTyped = true;
            Ask();
        };
        m_bar->OnClose = [this] { Close(); };
        box->insertWidget(box->indexOf(&m_control) + 1, m_bar);
        SetTabOrder(m_control, *m_bar);
    }
    if (!m_bar)
        return;
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

bool PageFinding::Close()
{
    if (!IsOpen())
        return false;
    m_bar->hide();
    m_isTyped = false;
    m_steps = 0;
    m_isCounting = true;
    Ask();
    m_control.setFocus();
    return true;
}

void PageFinding::PageLeft()
{
    ++m_page;
    m_isAsking = false;
    m_isTyped = false;
    m_steps = 0;
    if (m_bar)
        m_bar->ClearResult();
}

void PageFinding::PageCame()
{
    // Where the reader stands in the new page is not the bar's to say.
    m_isCounting = m_isCounting || IsOpen();
    Ask();
}

void PageFinding::Ask()
{
    if (m_isAsking || !m_control.IsComplete())
        return;
    if (std::exchange(m_isCounting, false))
        Send(QVariant());
    else if (std::exchange(m_isTyped, false))
        Send(Text().isEmpty() ? QVariant() : QVariant(0));
    else if (m_steps != 0)
        Send(std::exchange(m_steps, 0));
}

void PageFinding::Send(const QVariant &step)
{
    m_isAsking = true;
    const QVariantMap finding{
        {QStringLiteral("query"), Text()},
        {QStringLiteral("matchCase"), m_bar && m_bar->IsCaseMatched()},
        {QStringLiteral("wholeWord"), m_bar && m_bar->IsWholeWord()},
        {QStringLiteral("step"), step},
        {QStringLiteral("isMarked"), IsOpen()},
    };
    const auto take = [self = QPointer<PageFinding>(this), page = m_page,
                       isStep = step.toInt() != 0](const QVariant &answer) {
        if (!self || self->m_page != page)
            return;
        self->m_isAsking = false;
        RunGuarded([&] { self->Take(answer.toMap(), isStep); });
        if (self)
            self->Ask();
    };
    m_control.page()->runJavaScript(ScriptCall(u"find", {finding}), QWebEngineScript::ApplicationWorld, take);
}

void PageFinding::Take(const QVariantMap &answer, bool isStep)
{
    const int count = answer.value(QStringLiteral("count")).toInt();
    const int at = answer.value(QStringLiteral("at")).toInt();
    const QString text = answer.value(QStringLiteral("text")).toString();
    if (!text.isEmpty() && OnSelect)
        OnSelect(text);
    if (isStep && count == 0 && !IsOpen()) {
        // Asks again, and tells that there is none.
        if (Text().isEmpty())
            m_control.ShowFindDialog();
        else
            Open({});
        return;
    }
    if (!IsOpen())
        return;
    if (count > 0 || !Text().isEmpty())
        m_bar->ShowResult(at, count);
    else
        m_bar->ClearResult();
}
