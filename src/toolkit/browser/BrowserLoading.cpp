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

constexpr Message pageLost{u"Không hiển thị được trang này: bộ máy trình duyệt đã hai lần bị dừng.",
                           u"The page could not be shown: the browser engine ended twice on it."};

} // namespace

void TBrowserControl::Private::ShowPage()
{
    profile->Pages().Withdraw(page->Address());
    isComplete = false;
    isTold = false;
    isBeginTold = false;
    isLost = false;
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
    if (!isWaiting)
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
    if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus) {
        isLost = true;
        wait.Wake();
    }
    // A page with a refresh is stopped by our script, when all of it is there.
    if (info.status() != QWebEngineLoadingInfo::LoadSucceededStatus &&
        info.status() != QWebEngineLoadingInfo::LoadStoppedStatus)
        return;
    // Not from within Chromium's call: a handler may wait for Chromium.
    QTimer::singleShot(0, this, [this, loaded = number] { Complete(loaded); });
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
    // Chromium navigates to "about:blank" without asking.
    isEmptying = address.scheme() == QLatin1StringView("about") && number != 0;
    isGone = isGone || isEmptying;
    // Of a page that begins before the one before has ended Qt WebEngine tells neither begin nor end.
    if (!isBeginTold && !isComplete && address.matches(page->Address(), QUrl::RemoveFragment))
        AskForEnd(number);
}

void TBrowserControl::Private::AskForEnd(quint64 loaded)
{
    const auto take = [self = QPointer(this), loaded](const QVariant &state) {
        constexpr int askAgain = 20; // milliseconds
        if (!self || loaded != self->number || self->isComplete)
            return;
        const bool isAtEnd = state == QStringLiteral("complete");
        QTimer::singleShot(isAtEnd ? 0 : askAgain, self, [self, loaded, isAtEnd] {
            if (isAtEnd)
                self->Complete(loaded);
            else if (loaded == self->number && !self->isComplete && !self->isLost)
                self->AskForEnd(loaded);
        });
    };
    page->runJavaScript(QStringLiteral("document.readyState"), QWebEngineScript::ApplicationWorld, take);
}

void TBrowserControl::Private::EmptyPageCame()
{
    isEmptying = false;
    // A page that empties the view by itself would do it again, so it is restored only once for each act of the reader.
    if (!isWaiting && (!isGone || std::exchange(hasLeft, true)))
        return;
    QTimer::singleShot(0, this, [this, left = number] {
        if (left != number)
            return;
        if (isWaiting)
            Load();
        else
            ShowPage();
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
