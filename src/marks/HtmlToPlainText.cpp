#include "marks/HtmlToPlainText.h"

#include "toolkit/browser/BrowserPage.h"
#include "toolkit/browser/BrowserProfile.h"
#include "toolkit/browser/EngineWait.h"

#include <QWebEngineScript>

namespace {

/// Controls count their pages from 1.
constexpr int HiddenOwner = 0;

} // namespace

QString HtmlToPlainText(const QString &html)
{
    const std::shared_ptr<BrowserProfile> profile = BrowserProfile::Shared();
    const QUrl address = profile->Pages().Publish(HiddenOwner, html.toUtf8());
    EngineWait wait;
    enum class Load { Running, Done, Failed } load = Load::Running;
    QString text;
    {
        BrowserPage page(profile.get());
        QObject::connect(&page, &QWebEnginePage::loadFinished, &page, [&](bool isLoaded) {
            load = isLoaded ? Load::Done : Load::Failed;
            wait.Wake();
        });
        QObject::connect(&page, &QWebEnginePage::renderProcessTerminated, &page, [&] {
            load = Load::Failed;
            wait.Renew(); // nothing will answer any more
        });
        page.LoadFromHost(address);
        if (wait.Until([&] { return load != Load::Running; }) && load == Load::Done) {
            const QString script = QStringLiteral("document.body ? document.body.innerText : ''");
            text = wait.For<QVariant>(
                           [&](auto answer) { page.runJavaScript(script, QWebEngineScript::ApplicationWorld, answer); })
                       .toString();
        }
    }
    profile->Pages().Withdraw(address);
    return text;
}
