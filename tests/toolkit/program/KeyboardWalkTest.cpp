#include "base/InterfaceLanguage.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/EachWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QButtonGroup>
#include <QCursor>
#include <QMenu>
#include <QSignalSpy>
#include <QTabBar>
#include <QWidgetAction>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// A key as the desktop delivers it to the active window, so that shortcuts and open menus take their part.
void Press(int key, Qt::KeyboardModifiers modifiers = {})
{
    ASSERT_TRUE(QApplication::activeWindow());
    QTest::keyClick(QApplication::activeWindow()->windowHandle(), Qt::Key(key), modifiers);
}

std::string Name(const QAction &action)
{
    if (const auto *held = qobject_cast<const QWidgetAction *>(&action))
        return Name(*held->defaultWidget()->findChild<QWidget *>());
    return (action.menu() ? action.menu()->objectName() : action.objectName()).toStdString();
}

QMenu *OpenMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

/// Walks a window as a reader without a mouse does. What can't be reached, or not be left, fails with its name.
class KeyboardWalk : public EachWindow
{
protected:
    /// The control of the window that has the focus, itself or in a part of it; null if none has.
    QWidget *Stop() const
    {
        QWidget *at = QApplication::focusWidget();
        while (at && !m_controls.contains(at))
            at = at->parentWidget();
        return at;
    }

    /// Where the tab key leads from here until it is here again, one way or the other.
    QWidgetList Round(bool isBack)
    {
        constexpr int mostPresses = 200;
        QWidgetList round;
        for (int presses = 0; presses < mostPresses; ++presses) {
            QWidget *stop = Stop();
            if (!stop) {
                ADD_FAILURE() << "the focus is lost after " << (round.isEmpty() ? "nothing" : Name(*round.last()));
                break;
            }
            if (!round.isEmpty() && stop == round.first() && !IsInPage(stop))
                return round;
            if (!round.contains(stop))
                round.append(stop);
            auto *page = qobject_cast<TBrowserControl *>(stop);
            if (page)
                AwaitFocus(*page);
            const QString place = page ? PlaceInPage(*page) : QString();
            Press(isBack ? Qt::Key_Backtab : Qt::Key_Tab, isBack ? Qt::ShiftModifier : Qt::NoModifier);
            // Chromium takes the key in its own time: it goes on within the page, or gives the focus back.
            if (page && !WaitFor([&] { return Stop() != stop || PlaceInPage(*page) != place; })) {
                ADD_FAILURE() << Name(*stop) << " keeps the focus";
                break;
            }
        }
        ADD_FAILURE() << "the tab key does not come back to " << (round.isEmpty() ? "" : Name(*round.first()));
        return round;
    }

    /// Chromium loses a key that comes before the focus, and on a busy machine sometimes the focus itself.
    static void AwaitFocus(TBrowserControl &page)
    {
        const auto hears = [&] { return PlaceInPage(page).startsWith(u"true"_s); };
        if (WaitFor(hears))
            return;
        page.clearFocus();
        page.setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(WaitFor(hears)) << Name(page) << " does not hear of the focus";
    }

    static QString PlaceInPage(TBrowserControl &page)
    {
        return page
            .Evaluate(
                u"document.hasFocus() + ' ' + [...document.querySelectorAll('*')].indexOf(document.activeElement)"_s)
            .toString();
    }

    /// A round that starts in a page would end at the first of its links.
    static bool IsInPage(const QWidget *stop) { return qobject_cast<const TBrowserControl *>(stop); }

    /// Of buttons in a group the tab key comes to one, the arrows to the others.
    void WalkGroup(QAbstractButton &first, QWidgetList &reached)
    {
        const QList<QAbstractButton *> group = first.group()->buttons();
        first.setFocus(Qt::TabFocusReason);
        for (const int key : {Qt::Key_Right, Qt::Key_Left}) {
            for (qsizetype press = 0; press < group.size(); ++press) {
                Press(key);
                reached.append(Stop());
            }
        }
        first.click(); // the last arrow has chosen another
    }

    void ExpectReached(const QWidgetList &reached)
    {
        for (const QWidget *control : std::as_const(m_wanted)) {
            const auto *button = qobject_cast<const QAbstractButton *>(control);
            const bool hasLetter = button && control->focusPolicy() == Qt::NoFocus && !button->shortcut().isEmpty();
            EXPECT_TRUE(hasLetter || reached.contains(control)) << "no key leads to " << Name(*control);
        }
    }

    /// Each entry of the open menu and of its submenus; the menu is closed then.
    void WalkMenu(QMenu &menu)
    {
        SCOPED_TRACE(menu.objectName().toStdString());
        QList<QAction *> missed;
        for (QAction *action : menu.actions()) {
            if (action->isVisible() && action->isEnabled() && !action->isSeparator())
                missed.append(action);
        }
        for (qsizetype press = 0; press <= menu.actions().size() && !missed.isEmpty(); ++press) {
            if (press > 0 || !menu.activeAction())
                Press(Qt::Key_Down);
            QAction *action = menu.activeAction();
            if (!action || missed.removeAll(action) == 0)
                continue;
            if (action->menu())
                WalkSubmenu(menu, *action);
            else if (auto *held = qobject_cast<QWidgetAction *>(action))
                WalkChoices(*held->defaultWidget()->findChild<TBarCombo *>());
        }
        for (const QAction *action : std::as_const(missed))
            ADD_FAILURE() << "no key leads to " << Name(*action);
        Press(Qt::Key_Escape);
        EXPECT_FALSE(menu.isVisible()) << "it can't be left";
    }

    void WalkSubmenu(QMenu &menu, QAction &entry)
    {
        for (const auto &[in, out] : {std::pair(Qt::Key_Return, Qt::Key_Left), {Qt::Key_Right, Qt::Key_Escape}}) {
            Press(in);
            ASSERT_EQ(OpenMenu(), entry.menu()) << Name(entry) << " does not open";
            if (in == Qt::Key_Right)
                WalkMenu(*entry.menu()); // ends with its key
            else
                Press(out);
            ASSERT_EQ(OpenMenu(), &menu) << Name(entry) << " can't be left";
            EXPECT_EQ(menu.activeAction(), &entry);
        }
    }

    /// All items of a combo in a menu, and back to the one that was chosen.
    void WalkChoices(TBarCombo &combo)
    {
        ASSERT_TRUE(WaitFor([&] { return combo.hasFocus(); })) << combo.objectName().toStdString() << " gets no keys";
        const int chosen = combo.ItemIndex();
        for (int item = chosen + 1; item < combo.count(); ++item) {
            Press(Qt::Key_Down);
            ASSERT_EQ(combo.ItemIndex(), item) << combo.objectName().toStdString();
        }
        for (int item = combo.count() - 2; item >= std::max(chosen, 0); --item) {
            Press(Qt::Key_Up);
            ASSERT_EQ(combo.ItemIndex(), item) << combo.objectName().toStdString();
        }
    }

    /// The menu that is open; it is closed then in any case.
    void WalkOpenMenu(const std::string &opener)
    {
        if (QMenu *menu = OpenMenu())
            WalkMenu(*menu);
        else
            ADD_FAILURE() << opener << " opens no menu";
        while (QWidget *open = QApplication::activePopupWidget())
            open->close();
    }

    void WalkMenuOf(QToolButton &button)
    {
        SCOPED_TRACE(Name(button));
        button.setFocus(Qt::TabFocusReason);
        bool isWalked = false;
        // A menu that the whole button opens runs a loop of its own.
        QTimer::singleShot(0, &button, [&] {
            isWalked = true;
            WalkOpenMenu(Name(button));
        });
        Press(button.popupMode() == QToolButton::InstantPopup ? Qt::Key_Space : Qt::Key_Down);
        EXPECT_TRUE(WaitFor([&] { return isWalked && !QApplication::activePopupWidget(); }));
        EXPECT_EQ(Stop(), &button) << "the focus is not back";
    }

    /// The menu that Shift+F10 opens on a control.
    void WalkContextMenu(QWidget &control)
    {
        SCOPED_TRACE("menu of " + Name(control));
        control.setFocus(Qt::TabFocusReason);
        Press(Qt::Key_F10, Qt::ShiftModifier);
        EXPECT_TRUE(WaitFor([] { return OpenMenu() != nullptr; }));
        WalkOpenMenu(Name(control));
        EXPECT_EQ(Stop(), &control) << "the focus is not back";
    }

    /// A button that must not take the focus, because it acts on the control that has it, is pressed by its letter.
    void PressLetterOf(QAbstractButton &button)
    {
        const QSignalSpy clicks(&button, &QAbstractButton::clicked);
        if (!button.isEnabled()) { // the marks' buttons act on an edited row
            auto &title = In<QLineEdit>(*button.window(), "edTitleFocus");
            title.setFocus();
            Press(Qt::Key_A);
            EXPECT_TRUE(WaitFor([&] { return button.isEnabled(); })) << Name(button);
        }
        if (button.shortcut().isEmpty())
            return; // told already
        const QKeyCombination key = button.shortcut()[0];
        Press(key.key(), key.keyboardModifiers());
        EXPECT_TRUE(WaitFor([&] { return clicks.size() == 1; })) << Name(button) << " has no letter";
        boxes.clear(); // whether to delete
    }

    void Walk(QWidget &walked)
    {
        SCOPED_TRACE(walked.objectName().toStdString() + " in language " + std::to_string(InterfaceLang));
        walked.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&walked));
        for (TBrowserControl *page : walked.findChildren<TBrowserControl *>())
            EXPECT_TRUE(WaitFor([&] { return page->IsComplete(); }));
        if (walked.objectName() == u"frmSearchSutas"_s) {
            In<QLineEdit>(walked, "edSearchText").setText(u"kinh"_s);
            Press(Qt::Key_Return);
        }
        m_controls.clear();
        m_wanted.clear();
        for (QWidget *widget : Shown(walked)) {
            const bool isPage = qobject_cast<TBrowserControl *>(widget);
            const bool isOn = widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus; // see PressLetterOf()
            if (!isPage && (!TakesInput(*widget) || widget->focusProxy()))
                continue;
            m_controls.append(widget);
            if (isPage || isOn)
                m_wanted.append(widget);
        }
        if (!Stop() || IsInPage(Stop()))
            m_wanted.first()->setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(WaitFor([this] { return Stop() != nullptr; })) << Name(*m_wanted.first());
        const QWidgetList there = Round(false), back = Round(true);
        QWidgetList byArrows;
        for (QWidget *stop : there) {
            auto *button = qobject_cast<QAbstractButton *>(stop);
            if (button && button->group())
                WalkGroup(*button, byArrows);
        }
        ExpectReached(there + byArrows);
        ExpectReached(back + byArrows);
        for (QWidget *control : QWidgetList(m_wanted)) {
            auto *button = qobject_cast<QToolButton *>(control);
            if (button && button->menu() && button->isEnabled())
                WalkMenuOf(*button);
            else if (button && button->focusPolicy() == Qt::NoFocus)
                PressLetterOf(*button);
            else if (qobject_cast<QTabBar *>(control))
                WalkTabs(static_cast<QTabBar &>(*control));
            auto *page = qobject_cast<TBrowserControl *>(control);
            if (page ? bool(page->OnShowContextMenu) : control->contextMenuPolicy() == Qt::CustomContextMenu)
                WalkContextMenu(*control);
        }
    }

    void WalkTabs(QTabBar &tabs)
    {
        const int shown = tabs.currentIndex();
        tabs.setFocus(Qt::TabFocusReason);
        for (const int key : {Qt::Key_Left, Qt::Key_Right}) {
            for (int tab = 0; tab < tabs.count(); ++tab)
                Press(key);
            EXPECT_EQ(tabs.currentIndex(), key == Qt::Key_Left ? 0 : tabs.count() - 1);
        }
        tabs.setCurrentIndex(shown);
    }

    QWidgetList m_controls; ///< of the window that is walked: all that a reader uses
    QWidgetList m_wanted;   ///< those that he could use from the start; the walk itself may enable the way back
};

} // namespace

TEST_F(KeyboardWalk, ReachesAndLeavesEachControlEntryAndChoiceInBothLanguages)
{
    StartProgram();
    DictionaryKind = 5;
    for (const int language : {0, 1}) {
        Find<TBarCombo>("bcbLanguage").SetItemIndex(language);
        const auto walk = [this](QWidget &walked) { Walk(walked); };
        VisitAll(walk);
        VisitPreview(walk);
    }
}

TEST_F(KeyboardWalk, AButtonIsNotLitOnceItsMenuHasClosed)
{
    StartProgram();
    Find<TBarCombo>("bcbInterface").SetItemIndex(24);
    const QPoint away = window->mapToGlobal(QPoint(window->width() / 2, window->height() - 40));
    for (const char *name : {"btnSystem", "btnMarginWidth"}) {
        SCOPED_TRACE(name);
        auto &button = Find<QToolButton>(name);
        const auto isLit = [&] { return button.underMouse(); };
        QCursor::setPos(away);
        EXPECT_TRUE(WaitFor([&] { return !isLit(); }));
        const QImage before = button.grab().toImage();
        const QPoint arrow(button.width() - 4, button.height() / 2);
        QCursor::setPos(button.mapToGlobal(arrow));
        EXPECT_TRUE(WaitFor(isLit));
        QTimer::singleShot(0, &button, [&] {
            EXPECT_TRUE(OpenMenu());
            QCursor::setPos(away);
            Press(Qt::Key_Escape);
        });
        QTest::mousePress(&button, Qt::LeftButton, {}, arrow);
        EXPECT_TRUE(WaitFor([&] { return !OpenMenu() && button.grab().toImage() == before; }));
    }
}
