#include "base/Colour.h"
#include "base/Messages.h"
#include "toolkit/browser/BrowserControlPrivate.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QPointer>
#include <QTimer>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>

#include <utility>

namespace {

constexpr int askLate = 200; // milliseconds; nearly always the end is told
constexpr int askAgain = 20;

constexpr Message pageLost{u"Không hiển thị được trang này: bộ máy trình duyệt đã hai lần bị dừng.",
                           u"The page could not be shown: the browser engine ended twice on it."};

} // namespace

void TBrowserControl::Private::ShowPage()
{
    profile->Pages().Withdraw(page->Address());
    isComplete = false;
    isTold = false;
    isLost = false;
    isLoadedAgain = false;
    isGone = false;
    foundText.clear();
    isTextSelected = false;
    ++number;
    wait.Renew();
    finding->PageLeft();
    paper = DarkPaper();
    const QString ground =
        paper.isValid() ? QStringLiteral("\nbody {background-color: %1}").arg(paper.name()) : QString();
    page->setBackgroundColor(paper.isValid() ? paper : QColor(Qt::white));
    InstallPageScripts(page->scripts(), {hostCss, ground, isDark || paper.isValid(), source.size()});
    Load();
}

void TBrowserControl::Private::Load()
{
    // Qt WebEngine does not tell the end of what is loaded while an empty page is on its way.
    isWaiting = isEmptying;
    if (isWaiting)
        return;
    isBeginTold = false;
    watch.stop();
    page->LoadFromHost(profile->Pages().Publish(owner, source));
}

void TBrowserControl::Private::LoadingChanged(const QWebEngineLoadingInfo &info)
{
    input->Attach();
    if (isEmptying && info.url().scheme() == QLatin1StringView("about") &&
        info.status() != QWebEngineLoadingInfo::LoadStartedStatus)
        EmptyPageCame();
    if (!info.url().matches(page->Address(), QUrl::RemoveFragment) || isComplete)
        return;
    if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
        isBeginTold = true;
        ApplyZoom();
    }
    if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus)
        LoadFailed();
    // A page with a refresh is stopped by our script, when all of it is there.
    if (info.status() != QWebEngineLoadingInfo::LoadSucceededStatus &&
        info.status() != QWebEngineLoadingInfo::LoadStoppedStatus)
        return;
    // Not from within Chromium's call: a handler may wait for Chromium.
    QTimer::singleShot(0, this, [this, loaded = number] { Complete(loaded); });
}

/// Another page of Chromium's own accord, begun just before, may end this one's load; once more it comes.
void TBrowserControl::Private::LoadFailed()
{
    if (std::exchange(isLoadedAgain, true)) {
        isLost = true;
        wait.Wake();
        return;
    }
    QTimer::singleShot(0, this, [this, failed = number] {
        if (failed == number && !isComplete)
            Load();
    });
}

void TBrowserControl::Private::Complete(quint64 loaded)
{
    if (loaded != number || isComplete)
        return;
    isComplete = true;
    ApplyZoom();
    const QPointer<Private> self = this;
    // A copy, because the handler may replace itself.
    if (const auto handler = q->OnDocumentComplete)
        RunGuarded(handler);
    if (!self || loaded != number)
        return;
    // Waits continue only after the handler, so that their highlighting goes over its own.
    isTold = true;
    finding->PageCame();
    wait.Wake();
}

void TBrowserControl::Private::AddressChanged(const QUrl &address)
{
    const bool isOwn = address.matches(page->Address(), QUrl::RemoveFragment);
    // Chromium navigates to "about:blank" without asking.
    isEmptying = address.scheme() == QLatin1StringView("about") && number != 0;
    // An empty page that was on its way before may come late.
    isGone = isEmptying || (isGone && !isOwn);
    if (isEmptying || (isOwn && !isComplete))
        watch.start(isBeginTold ? askLate : 0);
}

/// Of a page that begins before the one before has ended Qt WebEngine may tell no end, or neither begin nor end. So
/// what is there is asked, until its end is known.
void TBrowserControl::Private::AskForEnd()
{
    if (isLost || (isComplete && !isEmptying))
        return;
    watch.start(askAgain);
    const auto take = [self = QPointer(this), asked = number](const QVariant &answer) {
        const QVariantList state = answer.toList();
        if (!self || asked != self->number || state.value(1) != QStringLiteral("complete"))
            return;
        const QUrl address(state[0].toString());
        if (address.matches(self->page->Address(), QUrl::RemoveFragment))
            QTimer::singleShot(0, self, [self, asked] { self->Complete(asked); });
        else if (self->isEmptying && address.scheme() == QLatin1StringView("about"))
            self->EmptyPageCame();
    };
    page->runJavaScript(QStringLiteral("[location.href, document.readyState]"), QWebEngineScript::ApplicationWorld,
                        take);
}

void TBrowserControl::Private::EmptyPageCame()
{
    isEmptying = false;
    // A page that empties the view by itself would do it again, so it is restored only once for each act of the reader.
    if (!isWaiting && std::exchange(hasLeft, true)) {
        isLost = !isComplete; // nothing else ends a wait for it
        wait.Wake();
        return;
    }
    QTimer::singleShot(0, this, [this, left = number] {
        if (left != number)
            return;
        if (isComplete)
            ShowPage();
        else
            Load(); // those who wait for it go on
    });
}

QColor TBrowserControl::Private::DarkPaper() const
{
    if (!followsSkin)
        return {};
    const QColor base = q->palette().color(QPalette::Base);
    const auto colour = static_cast<Colour>(base.blue() << 16 | base.green() << 8 | base.red());
    return IsDarkColour(colour) ? base : QColor();
}

void TBrowserControl::Private::FollowSkin()
{
    if (DarkPaper() == paper)
        return;
    if (number != 0 && !page->IsAway())
        ShowPage();
    else if (number == 0)
        page->setBackgroundColor(DarkPaper().isValid() ? DarkPaper() : QColor(Qt::white));
}

void TBrowserControl::Private::RendererEnded()
{
    if (number == 0)
        return;
    isComplete = false;
    if (!hasRendererEnded) {
        hasRendererEnded = true;
        ShowPage();
        return;
    }
    // Nothing will answer any more; a command would wait for the next page and act on that.
    isLost = true;
    wait.Renew();
    RunGuarded([] {
        Doors().messageBox(QStringLiteral("Lumivara 1.0"), TextOrEnglish(pageLost), BoxButtons::Ok, BoxIcon::Error);
    });
}
