#include "base/InterfaceLanguage.h"
#include "support/WaitFor.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/bound/DBTreeList.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/EachWindow.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QSplitter>
#include <QTabBar>

using namespace Qt::StringLiterals;

namespace {

constexpr int LeastSide = 24;

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

class Access : public EachWindow
{
protected:
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
        VisitAll([this](QWidget &visited) { Walk(visited); });
    }

    QMap<std::string, QString> names; ///< of the controls in Vietnamese
};

} // namespace

TEST_F(Access, EachWindow)
{
    StartProgram();
    Find<TBarCombo>("bcbInterface").SetItemIndex(24);
    WalkAll();
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    Find<TBarCombo>("bcbInterface").SetItemIndex(27);
    WalkAll();
}

TEST_F(Access, EachWindowWithTextHalfAsLargeAgain)
{
    RunAgain(u"Access.EachWindow"_s, {{u"QT_FONT_DPI"_s, u"144"_s}, {u"QT_ENABLE_HIGHDPI_SCALING"_s, u"0"_s}});
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
