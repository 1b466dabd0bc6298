#include "BenchReader.h"
#include "Measures.h"
#include "Sample.h"
#include "Suites.h"
#include "stores/settings/Options.h"

#include "dictionary/Dictionary.h"
#include "dictionary/DictionaryDM.h"
#include "marks/FocusHighlight.h"
#include "reader/Main.h"
#include "search/SearchSutas.h"
#include "stores/ClientsDM.h"
#include "stores/Modules.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/Forms.h"
#include "toolkit/skin/SkinController.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPalette>
#include <QSignalBlocker>
#include <QStyleFactory>
#include <QTest>

#include <malloc.h>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int Settling = 100; ///< milliseconds in which what a change has posted is done

void PaintWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible())
            window->repaint();
    }
}

/// All windows of the program, open on the screen.
class SkinWindows
{
public:
    explicit SkinWindows(bool isWithTools) : m_reader(205, PlainPage(1000))
    {
        if (isWithTools)
            OpenTools();
        QTest::qWait(Settling);
        m_skins = Combo().count();
        if (m_skins == 0)
            qFatal("the product's skin file holds no skin");
    }

    /// From the choice of another skin to all windows painted, when one was on before.
    double ChangeTime()
    {
        Choose(m_next);
        m_next = (m_next + 1) % std::max(m_skins, 2);
        QTest::qWait(Settling);
        return Time([this] { Choose(m_next); });
    }
    /// The same with Qt's plain style and a palette.
    double PlainTime()
    {
        m_isOther = !m_isOther;
        return Time([this] {
            QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
            QApplication::setPalette(QPalette(m_isOther ? QColor(0x30, 0x40, 0x50) : QColor(0xe0, 0xe4, 0xe8)));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::ApplicationPaletteChange);
        });
    }
    /// The first skin in a window that is not on the screen yet, as in a start.
    double StartTime()
    {
        m_reader.Window().hide();
        Choose(m_skins - 1); // stored, as it is at a start
        ShowPlatform();
        {
            const QSignalBlocker quiet(Combo());
            Combo().setCurrentIndex(-1);
        }
        QStringList names;
        QElapsedTimer clock;
        clock.start();
        ListSkins(AppPath + u"AllSkins.skinres"_s, names);
        Combo().SetItemIndex(m_skins - 1);
        const double time = Milliseconds(clock);
        m_reader.Window().show();
        QTest::qWait(Settling);
        return time;
    }
    /// The heap with the windows painted in a skin or as the platform paints.
    double Heap(bool isSkinned)
    {
        if (isSkinned)
            Choose(m_skins - 1);
        else
            ShowPlatform();
        PaintWindows();
        QTest::qWait(Settling);
        constexpr double megabyte = 1e6;
        return static_cast<double>(mallinfo2().uordblks) / megabyte;
    }

private:
    TBarCombo &Combo() { return *m_reader.Window().findChild<TBarCombo *>(u"bcbInterface"_s); }

    void OpenTools()
    {
        const QString folder = QFileInfo(m_reader.CanonPath()).path() + u'/';
        QFile::copy(Sample().Folder() + u"TARUNECLIENT.FDB"_s, folder + u"TARUNECLIENT.FDB"_s);
        QFile::link(Sample().Folder() + u"PALIDICT.FDB"_s, folder + u"PALIDICT.FDB"_s);
        frmClientsDM->DataModuleCreate();
        frmDictionaryDM->DataModuleCreate();
        m_reader.Window().Content().ShowFindDialog();
        OpenForm(u"frmSearchSutas"_s, [this] { return new TfrmSearchSutas(m_reader.Window()); });
        OpenForm(u"frmFocusHighlight"_s, [this] { return new TfrmFocusHighlight(m_reader.Window()); });
        OpenForm(u"frmDictionary"_s, [] {
            auto *window = new TfrmDictionary;
            window->FormCreate();
            return window;
        });
    }
    /// Also where the file has one skin alone.
    void Choose(int index)
    {
        index = std::min(index, m_skins - 1);
        if (Combo().ItemIndex() == index)
            Combo().OnChange();
        else
            Combo().SetItemIndex(index);
    }
    static void ShowPlatform()
    {
        TdxSkinController().Refresh(); // follows no slot
        QTest::qWait(Settling);
    }
    template <typename Change>
    static double Time(const Change &change)
    {
        QTest::qWait(Settling);
        QElapsedTimer clock;
        clock.start();
        change();
        PaintWindows();
        return Milliseconds(clock);
    }

    BenchReader m_reader;
    int m_skins = 0;
    int m_next = 0;
    bool m_isOther = false;
};

} // namespace

void RegisterSkinMeasures()
{
    const Lazy<SkinWindows> all{[] { return std::make_unique<SkinWindows>(true); }};
    Register({.name = u"skin-change"_s,
              .unit = u"ms"_s,
              .reach = u"at most 3 x, aim 150 ms"_s,
              .ours = [all] { return all().ChangeTime(); },
              .floor = [all] { return all().PlainTime(); },
              .finish = all.Finish(),
              .repetitions = 15});
    const Lazy<SkinWindows> alone{[] { return std::make_unique<SkinWindows>(false); }};
    Register({.name = u"skin-start"_s,
              .unit = u"ms"_s,
              .reach = u"at most 15 ms"_s,
              .ours = [alone] { return alone().StartTime(); },
              .floor = [] { return 15.0; },
              .finish = alone.Finish(),
              .repetitions = 15});
    const Lazy<SkinWindows> heap{[] { return std::make_unique<SkinWindows>(true); }};
    Register({.name = u"skin-memory"_s,
              .unit = u"MB"_s,
              .reach = u"at most + 3 MB"_s,
              .ours = [heap] { return heap().Heap(true); },
              .floor = [heap] { return heap().Heap(false); },
              .finish = heap.Finish()});
}
