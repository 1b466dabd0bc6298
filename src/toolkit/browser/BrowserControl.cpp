#include "toolkit/browser/BrowserControl.h"

#include "toolkit/browser/BrowserControlPrivate.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/browser/PagePrinting.h"
#include "toolkit/browser/PageSaving.h"
#include "toolkit/browser/PdfRequests.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QTimer>
#include <QWebEngineScript>

#include <algorithm>
#include <utility>

namespace {

constexpr int leastZoom = 25; // per cent, the engine's own limits
constexpr int greatestZoom = 500;

int NextOwner()
{
    static int lastOwner = 0;
    return ++lastOwner;
}

/// The text of a selection without the placeholder characters that Chromium puts for pictures.
QString WithoutPictures(QString text)
{
    return text.remove(QChar::ObjectReplacementCharacter);
}

} // namespace

TBrowserControl::Private::Private(TBrowserControl *control) : q(control), owner(NextOwner())
{
    page = new BrowserPage(profile.get());
    page->OnBeforeNavigate = [this](const QUrl &url) { return q->OnBeforeNavigate2 && q->OnBeforeNavigate2(url); };
    connect(page, &QWebEnginePage::loadingChanged, this, &Private::LoadingChanged);
    connect(page, &QWebEnginePage::renderProcessTerminated, this,
            [this] { QTimer::singleShot(0, this, [this] { RendererEnded(); }); });
    connect(page, &QWebEnginePage::selectionChanged, this, [this] {
        foundText.clear();
        isTextSelected = !WithoutPictures(page->selectedText()).isEmpty();
    });
    connect(page, &QWebEnginePage::urlChanged, this, &Private::AddressChanged);
    watch.setSingleShot(true);
    connect(&watch, &QTimer::timeout, this, &Private::AskForEnd);
    connect(page, &QWebEnginePage::contentsSizeChanged, this, &Private::TellPlacesChanged);

    input = new BrowserInput(q);
    input->OnPress = [this](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint point) {
        foundText.clear();
        if (q->OnClick)
            q->OnClick(button, modifiers, point.x(), point.y());
    };
    input->OnZoomWheel = [this](int steps) {
        if (q->OnZoomWheel)
            q->OnZoomWheel(steps);
    };
    input->OnMenuKey = [this](QPoint point) {
        if (MayShowMenu() && q->OnShowContextMenu)
            q->OnShowContextMenu(q->mapToGlobal(point));
    };
    input->OnInput = [this] { hasLeft = false; };

    finding = new PageFinding(*q);
    finding->OnSelect = [this](const QString &text) { foundText = text; };
    finding->OnBegin = [this] {
        if (q->OnFindBegin)
            q->OnFindBegin();
    };
    finding->OnMark = [this] { TellPlacesChanged(); };
    finding->OnStepKey = [this](bool isBackward) { return q->OnFindStep && q->OnFindStep(isBackward); };
    input->OnEscape = [this] { return finding->Close(); };
}

TBrowserControl::Private::~Private()
{
    profile->Pages().Withdraw(page->Address());
    // A page must be deleted before its profile.
    delete page;
}

void TBrowserControl::Private::ApplyZoom()
{
    // Qt WebEngine ignores a factor outside its range instead of clamping it.
    page->setZoomFactor(std::clamp(zoomPercent, leastZoom, greatestZoom) / 100.0);
}

void TBrowserControl::Private::TellPlacesChanged()
{
    if (isComplete && q->OnPlacesChange)
        RunGuarded(q->OnPlacesChange);
}

QVariant TBrowserControl::Private::Call(const QString &script)
{
    if (isLost)
        return {};
    return wait.For<QVariant>(
        [this, &script](auto answer) { page->runJavaScript(script, QWebEngineScript::ApplicationWorld, answer); });
}

TBrowserControl::TBrowserControl(QWidget *parent) : QWebEngineView(parent)
{
    d = std::make_unique<Private>(this);
    setPage(d->page);
    QFont own = font(); // pages have their own fonts and don't inherit a panel's
    own.setResolveMask(QFont::AllPropertiesResolved);
    setFont(own);
    setAcceptDrops(false);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, d.get(), [this](const QPoint &point) {
        if (!d->MayShowMenu())
            return;
        QTimer::singleShot(0, this, [this, screenPoint = mapToGlobal(point)] {
            RunGuarded([&] {
                if (OnShowContextMenu)
                    OnShowContextMenu(screenPoint);
            });
        });
    });
}

TBrowserControl::~TBrowserControl()
{
    PdfRequests::WaitForSafety(*d->page);
    delete d->finding;
    setPage(nullptr);
    d.reset();
}

bool TBrowserControl::event(QEvent *event)
{
    if ((event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved) && d)
        QTimer::singleShot(0, d->input, [input = d->input] { input->Attach(); });
    if (event->type() == QEvent::PaletteChange && d)
        QTimer::singleShot(0, d.get(), [this] { d->FollowSkin(); }); // a skin changes several colours, one by one
    return QWebEngineView::event(event);
}

QString TBrowserControl::HostCSS() const
{
    return d->hostCss;
}

void TBrowserControl::SetHostCSS(const QString &css)
{
    d->hostCss = css;
}

void TBrowserControl::SetDarkGround(bool on)
{
    d->isDark = on;
}

void TBrowserControl::SetFollowsSkin(bool on)
{
    d->followsSkin = on;
    d->FollowSkin();
}

void TBrowserControl::SetOpensLinksInside(bool on)
{
    d->page->OpensLinksInside = on;
}

void TBrowserControl::SetShowsMenuWithCtrl(bool on)
{
    d->showsMenuWithCtrl = on;
}

void TBrowserControl::LoadFromString(const QByteArray &page, const QString &title)
{
    d->source = page;
    d->title = title;
    d->hasRendererEnded = false;
    d->hasLeft = false;
    d->ShowPage();
}

TBrowserControl::Identity TBrowserControl::PrintedIdentity() const
{
    return d->identity;
}

void TBrowserControl::SetPrintedIdentity(const Identity &identity)
{
    d->identity = identity;
}

QByteArray TBrowserControl::Source() const
{
    return d->source;
}

bool TBrowserControl::IsComplete() const
{
    return d->isComplete;
}

bool TBrowserControl::IsPageGone() const
{
    return d->number != 0 && (d->isGone || d->isLost || d->page->IsAway());
}

bool TBrowserControl::WaitComplete()
{
    if (d->isComplete)
        return true;
    if (d->number == 0 || d->isLost)
        return false;
    const QPointer<TBrowserControl> self = this;
    return d->wait.Until([self] { return self && (self->d->isTold || self->d->isLost); }) && d->isComplete;
}

void TBrowserControl::Copy()
{
    // Chromium's command acts on its focused frame and does not know a selection made by script.
    if (isActiveWindow() && d->foundText.isEmpty()) {
        triggerPageAction(QWebEnginePage::Copy);
        return;
    }
    const QString text = GetSelectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void TBrowserControl::SelectAll()
{
    d->foundText.clear();
    // Chromium's command acts on the focus, and does nothing in an inactive window.
    setFocus();
    if (isActiveWindow()) {
        triggerPageAction(QWebEnginePage::SelectAll);
        return;
    }
    const auto keep = [self = QPointer<Private>(d.get()), number = d->number](const QVariant &text) {
        if (self && self->number == number)
            self->foundText = text.toString();
    };
    page()->runJavaScript(ScriptCall(u"selectAll"), QWebEngineScript::ApplicationWorld, keep);
}

QString TBrowserControl::GetSelectedText() const
{
    if (!d->isComplete)
        return {};
    const QString selected = WithoutPictures(selectedText());
    return selected.isEmpty() ? d->foundText : selected;
}

bool TBrowserControl::HasSelectedText() const
{
    return d->isComplete && ((d->isTextSelected && hasSelection()) || !d->foundText.isEmpty());
}

QString TBrowserControl::GetSelectedHtml()
{
    return d->isComplete ? d->Call(ScriptCall(u"selectedHtml")).toString() : QString();
}

void TBrowserControl::ShowFindDialog()
{
    d->finding->Open(GetSelectedText());
}

bool TBrowserControl::IsFindBarOpen() const
{
    return d->finding->IsOpen();
}

void TBrowserControl::FindStep(bool isBackward)
{
    d->finding->StepByKey(isBackward);
}

void TBrowserControl::PreferColoured(bool on)
{
    d->finding->PreferColoured(on);
}

void TBrowserControl::ShowPlaces(PlacesIn placesIn, qsizetype at)
{
    d->finding->ShowPlaces(std::move(placesIn), at);
}

void TBrowserControl::ClearPlaces()
{
    d->finding->ClearPlaces();
}

void TBrowserControl::Print()
{
    if (WaitComplete())
        PrintPage(*this, d->title);
}

void TBrowserControl::PrintPreview()
{
    if (WaitComplete())
        PreviewPage(*this, d->title);
}

void TBrowserControl::SaveDialog()
{
    const QPointer<TBrowserControl> self = this;
    // Before the page is complete its text would be incomplete, too.
    WaitComplete();
    if (self)
        SavePage(*this, d->title);
}

int TBrowserControl::ZoomPercent() const
{
    return d->zoomPercent;
}

void TBrowserControl::SetZoomPercent(int percent)
{
    if (percent == d->zoomPercent)
        return;
    d->zoomPercent = percent;
    d->ApplyZoom();
    d->TellPlacesChanged();
}

int TBrowserControl::SearchAndHighlight(const QString &text, FindFlags flags, ScrollMode scroll,
                                        const QString &foreground, const QString &background)
{
    if (!WaitComplete() || text.isEmpty())
        return 0;
    const QVariantMap options{
        {QStringLiteral("matchCase"), flags.testFlag(FindFlag::MatchCase)},
        {QStringLiteral("wholeWord"), flags.testFlag(FindFlag::WholeWord)},
        {QStringLiteral("scroll"), static_cast<int>(scroll)},
        {QStringLiteral("foreground"), foreground},
        {QStringLiteral("background"), background},
    };
    const QPointer<TBrowserControl> self = this;
    const int count = d->Call(ScriptCall(u"highlight", {text, options})).toInt();
    if (self && count > 0)
        d->TellPlacesChanged();
    return count;
}

bool TBrowserControl::ScrollToFirst(const QString &text)
{
    return d->isComplete && !text.isEmpty() && d->Call(ScriptCall(u"scrollToFirst", {text})).toBool();
}

QString TBrowserControl::GetWordAtCursor(int x, int y)
{
    return GetWordWithNeighbours(x, y, 0).word;
}

PageWord TBrowserControl::GetWordWithNeighbours(int x, int y, int most)
{
    if (!d->isComplete)
        return {};
    const qreal factor = d->page->zoomFactor();
    const QVariantMap found = d->Call(ScriptCall(u"wordAt", {x / factor, y / factor, most})).toMap();
    return {found[QStringLiteral("word")].toString().trimmed(), found[QStringLiteral("before")].toStringList(),
            found[QStringLiteral("after")].toStringList()};
}

bool TBrowserControl::AskPlace(const std::function<void(const PagePlace &)> &take)
{
    if (!d->isComplete || IsPageGone())
        return false;
    // Chromium runs this in the page before it puts the next one in its place.
    page()->runJavaScript(ScriptCall(u"placeAtTop"), QWebEngineScript::ApplicationWorld,
                          [take](const QVariant &answer) {
                              const QVariantMap place = answer.toMap();
                              if (!place.isEmpty())
                                  RunGuarded([&] { take(PlaceOf(place)); });
                          });
    return true;
}

PagePlace TBrowserControl::SelectedPlace()
{
    return d->isComplete ? PlaceOf(d->Call(ScriptCall(u"placeOfSelection")).toMap()) : PagePlace();
}

void TBrowserControl::GoToPlace(const PagePlace &place)
{
    if (d->isComplete)
        page()->runJavaScript(ScriptCall(u"goToPlace", {MapOf(place)}), QWebEngineScript::ApplicationWorld);
}

bool TBrowserControl::Ask(QStringView function, const QVariant &argument,
                          const std::function<void(const QVariant &)> &take)
{
    if (!d->isComplete || IsPageGone())
        return false;
    page()->runJavaScript(ScriptCall(function, {argument}), QWebEngineScript::ApplicationWorld,
                          [self = QPointer(d.get()), number = d->number, take](const QVariant &answer) {
                              if (self && self->number == number)
                                  RunGuarded([&] { take(answer); });
                          });
    return true;
}

QVariant TBrowserControl::Evaluate(const QString &script)
{
    return d->number == 0 ? QVariant() : d->Call(script);
}
