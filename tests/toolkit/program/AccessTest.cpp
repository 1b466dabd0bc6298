#include "base/InterfaceLanguage.h"
#include "marks/FocusEdit.h"
#include "marks/MarksWindow.h"
#include "presentation/About.h"
#include "presentation/Options.h"
#include "support/WaitFor.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/bound/DBTreeList.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/Forms.h"
#include "toolkit/skin/SkinController.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QSplitter>
#include <QTabBar>

using namespace Qt::StringLiterals;

namespace {

constexpr int LeastSide = 24;

std::string Name(const QWidget &widget)
{
    const QString name = widget.objectName();
    return (name.isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : name).toStdString();
}

/// Parts of other controls that a reader meets only through these, and a memo behind the others.
bool IsInner(const QWidget &widget)
{
    const auto isOf = [](const QWidget &one, std::initializer_list<const char *> kinds) {
        return std::any_of(kinds.begin(), kinds.end(), [&](const char *kind) { return one.inherits(kind); });
    };
    for (const QWidget *above = widget.parentWidget(); !above->isWindow(); above = above->parentWidget()) {
        if (isOf(*above, {"TBrowserControl", "QComboBox", "QTabBar"}))
            return true;
    }
    return isOf(widget, {"QLineEditIconButton", "QScrollBar", "QHeaderView", "QSplitterHandle"}) ||
           (widget.objectName().startsWith(u"qt_"_s) && !widget.inherits("QTabBar")) ||
           widget.objectName() == u"mmTmp"_s;
}

bool TakesInput(const QWidget &widget)
{
    return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(&widget);
}

QWidgetList Shown(const QWidget &window)
{
    QWidgetList shown;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->window() == &window && widget->isVisible() && !IsInner(*widget))
            shown.append(widget);
    }
    return shown;
}

QString AccessibleName(QObject &object)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&object);
    if (!interface || !qobject_cast<QComboBox *>(&object))
        return interface ? interface->text(QAccessible::Name) : QString();
    // A combo's name is what it shows, here; what it is for is told by the label that belongs to it.
    const auto labels = interface->relations(QAccessible::Label);
    return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
}

/// Whether a reader of rows comes to `first` before `second`: by the branches of what holds both, those side by side
/// from the left, others from the top.
bool IsBefore(const QWidget &first, const QWidget &second)
{
    if (first.isAncestorOf(&second) || second.isAncestorOf(&first))
        return first.isAncestorOf(&second);
    const QWidget *one = &first, *other = &second;
    while (!one->parentWidget()->isAncestorOf(&second))
        one = one->parentWidget();
    while (!other->parentWidget()->isAncestorOf(&first))
        other = other->parentWidget();
    const bool isInOneRow = one->y() <= other->geometry().bottom() && other->y() <= one->geometry().bottom();
    return isInOneRow ? one->x() < other->x() : one->y() < other->y();
}

/// The tab key leads from control to control in the order of reading, and stays in none. Pages come as the engine has
/// it.
void CheckTabOrder(const QWidget &window)
{
    const QWidgetList shown = Shown(window);
    QWidgetList stops;
    for (QWidget *at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain()) {
        // Of buttons that share a group, the tab key comes to one and the arrows to the others.
        const auto *button = qobject_cast<QAbstractButton *>(at);
        if (at->focusPolicy() & Qt::TabFocus && at->isEnabled() && !at->focusProxy() && shown.contains(at) &&
            !(button && button->group()))
            stops.append(at);
    }
    ASSERT_FALSE(stops.isEmpty());
    const auto isBefore = [](const QWidget *one, const QWidget *other) { return IsBefore(*one, *other); };
    std::rotate(stops.begin(), std::min_element(stops.begin(), stops.end(), isBefore), stops.end());
    for (int stop = 0; stop < stops.size(); ++stop) {
        const QWidget &at = *stops[stop];
        EXPECT_TRUE(stop == 0 || IsBefore(*stops[stop - 1], at)) << Name(*stops[stop - 1]) << " before " << Name(at);
        EXPECT_FALSE(at.property("tabKeyNavigation").toBool()) << "a trap at " << Name(at);
        EXPECT_TRUE(at.property("tabChangesFocus") != QVariant(false)) << "a trap at " << Name(at);
    }
}

void CheckMnemonics(const QWidget &window)
{
    const auto take = [](QSet<QString> &taken, const QString &text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        EXPECT_FALSE(taken.contains(key)) << text.toStdString() << " has the key of another";
        if (!key.isEmpty())
            taken.insert(key);
    };
    QSet<QString> taken;
    for (const QWidget *widget : Shown(window)) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *tabs = qobject_cast<const QTabBar *>(widget);
        if (qobject_cast<const QAbstractButton *>(widget) || (label && label->buddy()))
            take(taken, widget->property("text").toString());
        for (int tab = 0; tabs && tab < tabs->count(); ++tab)
            take(taken, tabs->tabText(tab));
    }
    for (const QMenu *menu : window.findChildren<QMenu *>()) {
        QSet<QString> inMenu;
        for (const QAction *action : menu->actions())
            take(inMenu, action->text());
    }
}

void ExpectRoom(const QWidget &widget, QSize needed, QSize room, const QString &text)
{
    EXPECT_EQ(needed.expandedTo(room), room) << Name(widget) << " cuts \"" << text.toStdString() << '"';
}

/// No text cut off, nothing to press too small.
void CheckSizes(QWidget &window)
{
    for (const QWidget *widget : Shown(window)) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const auto *combo = qobject_cast<const QComboBox *>(widget);
        const auto *label = qobject_cast<const QLabel *>(widget);
        const bool isControl = button || combo || (label && TakesInput(*label));
        if (isControl)
            ExpectRoom(*widget, {LeastSide, LeastSide}, widget->size(), u"a finger"_s);
        if (isControl || label) {
            const QRect place(widget->mapTo(&window, QPoint()), widget->size());
            EXPECT_TRUE(window.rect().contains(place)) << Name(*widget) << " stands outside";
        }
        const QString caption = widget->property("text").toString();
        if ((button || label) && !caption.isEmpty() && !(label && label->textFormat() == Qt::RichText)) {
            const bool wraps = label && label->wordWrap();
            ExpectRoom(*widget, wraps ? QSize(0, label->heightForWidth(label->width())) : widget->sizeHint(),
                       widget->size(), caption);
        } else if (const auto *tabs = qobject_cast<const QTabBar *>(widget)) {
            for (int tab = 0; tab < tabs->count(); ++tab) {
                const QSize needed = tabs->fontMetrics().size(Qt::TextShowMnemonic, tabs->tabText(tab));
                ExpectRoom(*tabs, needed.expandedTo({0, LeastSide}), (tabs->tabRect(tab) & tabs->rect()).size(),
                           tabs->tabText(tab));
            }
        }
    }
}

/// A thin line can be grabbed within a margin around it, and no further.
void CheckSplitters(const QWidget &window)
{
    for (const QSplitter *splitter : window.findChildren<QSplitter *>()) {
        QWidget *handle = splitter->handle(1);
        const QPoint middle = handle->mapTo(&window, handle->rect().center());
        for (const int x : {-8, -2, 2, 8})
            EXPECT_EQ(window.childAt(middle + QPoint(x, 0)) == handle, std::abs(x) == 2) << x;
        EXPECT_LE(splitter->handleWidth(), 2);
    }
}

const PlatformDoors realDoors = Doors();

class Access : public MarksWindow
{
protected:
    Access()
    {
        QFile skins(ProductFolder() + u"AllSkins.skinres"_s);
        EXPECT_TRUE(skins.open(QIODevice::ReadOnly));
        SetSkins(skins.readAll());
        AddEnglish();
        QFile::remove(Words());
        EXPECT_TRUE(QFile::copy(ProductFolder() + u"PALIDICT.FDB"_s, Words()));
    }
    ~Access() override
    {
        End();
        QFile::remove(Words());
        TdxSkinController controller;
        controller.NativeStyle = true;
        controller.Refresh();
    }
    QString Words() const { return QFileInfo(program).path() + u"/PALIDICT.FDB"_s; }

    void Walk(QWidget &window)
    {
        SCOPED_TRACE(window.objectName().toStdString());
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        QApplication::sendPostedEvents();
        for (QWidget *widget : Shown(window)) {
            const bool isPage = qobject_cast<TBrowserControl *>(widget);
            if ((!TakesInput(*widget) && !isPage) || widget->focusProxy() || qobject_cast<QTabBar *>(widget))
                continue;
            const QString name = AccessibleName(*widget);
            QString &named = names[window.objectName().toStdString() + Name(*widget)];
            EXPECT_FALSE(name.trimmed().isEmpty() || name == widget->objectName()) << Name(*widget) << " has no name";
            EXPECT_TRUE(InterfaceLang == 0 || name != named) << Name(*widget) << " is named in one language alone";
            if (InterfaceLang == 0)
                named = name;
        }
        CheckMnemonics(window);
        CheckSizes(window);
        CheckSplitters(window);
        CheckTabOrder(window);
    }

    void WalkAll()
    {
        Walk(*window);
        for (const auto &[command, name] : {std::pair("acDictionary", u"frmDictionary"_s),
                                            {"acSearchSutas", u"frmSearchSutas"_s},
                                            {"acOrganization", u"frmFocusHighlight"_s}}) {
            Trigger(command);
            QWidget *form = FindForm(name);
            ASSERT_TRUE(form) << command;
            Walk(*form);
            form->close();
            EXPECT_TRUE(WaitFor([&] { return !FindForm(name); }));
        }
        MarkAll([this](TfrmFocusEdit &editor) { Walk(editor); });
        Trigger("acFindDialog");
        auto &find = Find<QWidget>("dlgFind");
        In<QLineEdit>(find, "edFindText").setText(u"xyzzy"_s);
        EXPECT_TRUE(WaitFor([&] { return In<QLabel>(find, "lbNotFound").isVisible(); }));
        const QSize size = window->size();
        for (const QSize &each : {QSize(800, 600), QSize(1600, 700)}) {
            window->resize(each);
            EXPECT_TRUE(WaitFor([&] { return window->width() == each.width(); }));
            Walk(*window);
        }
        window->resize(size);
        QTest::keyClick(&find, Qt::Key_Escape);
        TfrmOptions options(window.get());
        options.show();
        Walk(options);
        options.findChild<QTabWidget *>()->setCurrentIndex(1);
        Walk(options);
        options.close();
        TfrmGioithieu about(window.get());
        about.show();
        EXPECT_TRUE(WaitFor([&] { return about.findChild<TBrowserControl *>()->IsComplete(); }));
        Walk(about);
        about.close();
        QTimer::singleShot(0, qApp, [this] {
            QWidget *box = QApplication::activeModalWidget();
            Walk(*box);
            box->close();
        });
        realDoors.messageBox(u"Lumivara"_s, u"?"_s, BoxButtons::YesNo, BoxIcon::None);
    }

    QMap<std::string, QString> names; ///< of the controls in Vietnamese
};

} // namespace

TEST_F(Access, EachWindow)
{
    Open();
    AddMark(*AnotherCopy(), u"giới"_s);
    Activate();
    Find<TBarCombo>("bcbInterface").SetItemIndex(24);
    WalkAll();
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    Find<TBarCombo>("bcbInterface").SetItemIndex(27);
    WalkAll();
}

TEST_F(Access, EachWindowWithTextHalfAsLargeAgain)
{
    QProcess larger;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_FONT_DPI"_s, u"144"_s);
    environment.insert(u"QT_ENABLE_HIGHDPI_SCALING"_s, u"0"_s);
    larger.setProcessEnvironment(environment);
    larger.setProcessChannelMode(QProcess::ForwardedChannels);
    larger.start(QCoreApplication::applicationFilePath(), {u"--gtest_filter=Access.EachWindow"_s});
    ASSERT_TRUE(WaitFor([&] { return larger.state() == QProcess::NotRunning; }, 60000));
    EXPECT_EQ(larger.exitCode(), 0);
}

TEST_F(Access, MenusOpenByTheKeyboard)
{
    Open();
    Activate();
    for (const char *name : {"dbtSutas", "edFilterSutta", "ebContent"}) {
        Find<QWidget>(name).setFocus(Qt::TabFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F10, Qt::ShiftModifier);
        EXPECT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; })) << name;
        while (QWidget *menu = QApplication::activePopupWidget())
            menu->close();
    }
}

TEST_F(Access, RowsSayWhatTheyShow)
{
    Open();
    const auto row = [this](QAccessible::Text what) {
        return QAccessible::queryAccessibleInterface(&Tree())->focusChild()->text(what);
    };
    EXPECT_EQ(row(QAccessible::Name), u"Giới thứ nhất"_s);
    Trigger("acNamePAL");
    EXPECT_EQ(row(QAccessible::Name), u"Paṭhama"_s);
    Tree().setCurrentIndex(Tree().currentIndex().parent());
    EXPECT_EQ(row(QAccessible::Description), u"đang mở"_s);
    QTest::keyClick(&Tree(), Qt::Key_Left);
    EXPECT_EQ(row(QAccessible::Description), u"đang đóng"_s);

    AddMark(*AnotherCopy(), u"giới"_s);
    OpenMarks();
    auto &grid = InMarks<TcxGridDBTableView>("gtvFocus");
    const auto said = [&] { return grid.model()->index(0, 0).data(Qt::AccessibleTextRole).toString(); };
    EXPECT_EQ(said(), u"Cao"_s);
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    EXPECT_EQ(said(), u"High"_s);
    QAccessibleInterface *cell = QAccessible::queryAccessibleInterface(&grid)->tableInterface()->cellAt(0, 1);
    EXPECT_EQ(cell->text(QAccessible::Name), u"giới"_s);
}
