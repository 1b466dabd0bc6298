#include "Measures.h"
#include "Painted.h"
#include "Suites.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserProfile.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWebEnginePage>
#include <QWidget>

#include <functional>
#include <memory>

namespace {

constexpr int Hits = 20000;
constexpr int HitsInParagraph = 5;
constexpr int WaitMilliseconds = 60000;
constexpr QSize ViewSize(760, 900);

const QString Wanted = QStringLiteral("khưu");
const QString Colour = QStringLiteral("#FFFF00");

/// Short of the size from which pages leave paragraphs unrendered, so that both
/// sides lay out the whole.
QByteArray Page(const QByteArray &before, const QByteArray &after)
{
    const QByteArray sentence = "vị tỳ " + before + Wanted.toUtf8() + after + " giữ gìn; ";
    QByteArray page = "<html><body style=\"font-family:'Segoe UI'; line-height:150%\">\n";
    for (int paragraph = 0; paragraph < Hits / HitsInParagraph; ++paragraph)
        page += "<p>" + sentence.repeated(HitsInParagraph) + "</p>\n";
    return page + "</body></html>\n";
}

/// A view on the screen and what is known of its painting.
class ShownView
{
public:
    ShownView(std::unique_ptr<QWebEngineView> view, int left) : m_view(std::move(view))
    {
        m_view->resize(ViewSize);
        m_view->move(left, 0);
        m_view->show();
        m_probe = new PaintedProbe(m_view.get(), [this] {
            if (m_painted)
                m_painted();
        });
    }

    QWebEngineView &View() { return *m_view; }
    /// Waits for the paint after a load that was begun.
    void WaitLoaded()
    {
        // A real event loop: the engine runs slowly under one that only polls.
        QEventLoop loop;
        QTimer::singleShot(WaitMilliseconds, &loop, [] { qFatal("a page was never painted"); });
        m_painted = [&loop] { loop.quit(); };
        loop.exec();
        m_painted = nullptr;
    }
    void WaitPainted()
    {
        m_probe->Ask();
        WaitLoaded();
    }

private:
    std::unique_ptr<QWebEngineView> m_view;
    PaintedProbe *m_probe;
    std::function<void()> m_painted;
};

/// The control of ours and the engine's own view, side by side.
class Sides
{
public:
    Sides()
        : m_ours(std::make_unique<TBrowserControl>(), 0),
          m_bare(std::make_unique<QWebEngineView>(new QWebEnginePage(m_profile.get()), nullptr), ViewSize.width() + 20)
    {
        m_bare.View().page()->setParent(&m_bare.View());
    }

    void ShowPlain()
    {
        static const QByteArray page = Page({}, {});
        Control().LoadFromString(page);
        m_ours.WaitLoaded();
    }

    double ColouringTime(const QString &colour)
    {
        QElapsedTimer clock;
        clock.start();
        const int count = Control().SearchAndHighlight(Wanted, {}, ScrollMode::None, {}, colour);
        m_ours.WaitPainted();
        const double time = Milliseconds(clock);
        if (count != Hits)
            qFatal("%d hits were coloured", count);
        return time;
    }

    double MarkedUpTime()
    {
        static const QByteArray page = Page("<font style=\"background-color: " + Colour.toUtf8() + ";\">", "</font>");
        LoadBare("<html><body>");
        QElapsedTimer clock;
        clock.start();
        LoadBare(page);
        return Milliseconds(clock);
    }

    /// Empties the control, so that its page costs the other side nothing.
    void Clear()
    {
        Control().LoadFromString("<html><body>");
        m_ours.WaitLoaded();
    }

private:
    TBrowserControl &Control() { return static_cast<TBrowserControl &>(m_ours.View()); }

    void LoadBare(const QByteArray &page)
    {
        const QUrl address = m_profile->Pages().Publish(0, page);
        m_bare.View().load(address);
        m_bare.WaitLoaded();
        m_profile->Pages().Withdraw(address);
    }

    std::shared_ptr<BrowserProfile> m_profile = BrowserProfile::Shared();
    ShownView m_ours;
    ShownView m_bare;
};

} // namespace

void RegisterColourMeasures()
{
    const auto sides = std::make_shared<std::unique_ptr<Sides>>();
    const auto made = [sides]() -> Sides & {
        if (!*sides)
            *sides = std::make_unique<Sides>();
        return **sides;
    };
    const auto finish = [sides] { sides->reset(); };
    Register({.name = QStringLiteral("colour-20k"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 2 x"),
              .ours =
                  [made] {
                      made().ShowPlain();
                      const double time = made().ColouringTime(Colour);
                      made().Clear();
                      return time;
                  },
              .floor = [made] { return made().MarkedUpTime(); },
              .finish = finish});
    // The second of the two passes over a page reached from the result list,
    // beside the first.
    const auto first = std::make_shared<double>();
    Register({.name = QStringLiteral("recolour-20k"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 1 x the first pass"),
              .ours =
                  [made, first] {
                      made().ShowPlain();
                      *first = made().ColouringTime(QStringLiteral("#00FF00"));
                      return made().ColouringTime(QStringLiteral("Yellow"));
                  },
              .floor = [first] { return *first; },
              .finish = finish});
}
