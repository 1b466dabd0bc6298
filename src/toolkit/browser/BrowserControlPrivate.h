#pragma once

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserInput.h"
#include "toolkit/browser/BrowserPage.h"
#include "toolkit/browser/BrowserProfile.h"
#include "toolkit/browser/EngineWait.h"
#include "toolkit/browser/PageFinding.h"

#include <QColor>
#include <QObject>
#include <QTimer>

#include <memory>

class QWebEngineLoadingInfo;

/// The page of a control, and what of it is on its way. BrowserLoading.cpp takes it from being handed over to its end.
class TBrowserControl::Private : public QObject
{
public:
    explicit Private(TBrowserControl *control);
    ~Private() override;

    void ShowPage();
    void Load();
    void LoadingChanged(const QWebEngineLoadingInfo &info);
    void LoadFailed();
    void Complete(quint64 number);
    void AddressChanged(const QUrl &address);
    void AskForEnd();
    void EmptyPageCame();
    void RendererEnded();
    void ApplyZoom();
    void TellPlacesChanged();
    QVariant Call(const QString &script);
    /// The colour of a dark skin's edits, for a control that follows the skin; invalid under a light one.
    QColor DarkPaper() const;
    void FollowSkin();
    bool MayShowMenu() const { return showsMenuWithCtrl || !input->PressModifiers().testFlag(Qt::ControlModifier); }

    TBrowserControl *q;
    std::shared_ptr<BrowserProfile> profile = BrowserProfile::Shared();
    const int owner;
    BrowserPage *page = nullptr;
    BrowserInput *input = nullptr;
    EngineWait wait;
    QTimer watch; ///< until it is asked whether the page is at its end
    PageFinding *finding = nullptr;

    QByteArray source;
    QString title;
    Identity identity;
    QString hostCss;
    bool isDark = false;
    bool followsSkin = false;
    QColor paper; ///< of the page that is shown, if that follows a dark skin
    /// The text that our scripts selected; selections by script don't update Qt WebEngine's cached text.
    QString foundText;
    bool isTextSelected = false; ///< in Qt WebEngine's cached selection
    int zoomPercent = 100;
    bool showsMenuWithCtrl = false;
    quint64 number = 0; ///< of the page handed over last
    bool isComplete = false;
    bool isBeginTold = false; ///< by Qt WebEngine
    bool isTold = false;      ///< OnDocumentComplete has returned for this page
    bool isLost = false;      ///< will not complete, so waits end
    bool isLoadedAgain = false;
    bool hasRendererEnded = false;
    bool hasLeft = false;    ///< the page navigated to an empty one, and was shown again, since the reader's last input
    bool isGone = false;     ///< the empty page is on show
    bool isEmptying = false; ///< it is on its way
    bool isWaiting = false;  ///< for its end, before the page is loaded
};
