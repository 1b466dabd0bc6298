#include "marks/FocusEdit.h"
#include "marks/MarksWindow.h"
#include "presentation/About.h"
#include "presentation/GlobalUnit.h"
#include "presentation/Options.h"
#include "support/WaitFor.h"
#include "toolkit/BarCombo.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxGridDBTableView.h"
#include "toolkit/DBTreeList.h"
#include "toolkit/Forms.h"
#include "toolkit/SkinController.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPrintPreviewDialog>
#include <QProcess>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSplitter>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int LeastSide = 24;

std::string Name(const QWidget &widget)
{
    const QString name =
        widget.objectName().isEmpty() ? QLatin1StringView(widget.metaObject()->className()) : widget.objectName();
    return (widget.window()->objectName() + u' ' + name).toStdString();
}

template <typename T>
const T *Above(const QWidget &widget)
{
    for (const QWidget *at = &widget; !at->isWindow(); at = at->parentWidget()) {
        const QWidget *above = at->parentWidget();
        if (const auto *found = qobject_cast<const T *>(above))
            return found;
    }
    return nullptr;
}

/// Parts of other controls that a reader meets only through these.
bool IsInner(const QWidget &widget)
{
    const bool isUnseen = widget.objectName() == u"mmTmp"_s; // behind the others
    const bool isToolkits = widget.objectName().startsWith(u"qt_"_s) && !qobject_cast<const QTabBar *>(&widget);
    return isUnseen || isToolkits || widget.inherits("QLineEditIconButton") || Above<TBrowserControl>(widget) ||
           Above<QComboBox>(widget) || Above<QTabBar>(widget) || Above<QPrintPreviewDialog>(widget) ||
           qobject_cast<const QScrollBar *>(&widget) || qobject_cast<const QHeaderView *>(&widget) ||
           qobject_cast<const QSplitterHandle *>(&widget);
}

bool TakesInput(const QWidget &widget)
{
    return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(&widget);
}

QList<QWidget *> Shown(const QWidget &window)
{
    QList<QWidget *> shown;
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
    const auto chain = [](const QWidget *widget) {
        QList<const QWidget *> above;
        for (; !widget->isWindow(); widget = widget->parentWidget())
            above.prepend(widget);
        return above;
    };
    const QList<const QWidget *> ones = chain(&first), others = chain(&second);
    qsizetype level = 0;
    while (level + 1 < std::min(ones.size(), others.size()) && ones[level] == others[level])
        ++level;
    if (ones[level] == others[level])
        return ones.size() < others.size(); // one holds the other
    const QRect one = ones[level]->geometry(), other = others[level]->geometry();
    const bool isInOneRow = one.top() <= other.bottom() && other.top() <= one.bottom();
    return isInOneRow ? one.left() < other.left() : one.top() < other.top();
}

/// The control of ours that has the focus.
QWidget *Focused()
{
    QWidget *focus = QApplication::focusWidget();
    for (QWidget *above = focus; above && !above->isWindow(); above = above->parentWidget()) {
        if (qobject_cast<TBrowserControl *>(above))
            return above;
    }
    return focus;
}

/// Tabs through the window, one round: every control once, in the order of reading.
void CheckTabOrder(QWidget &window)
{
    QSet<QWidget *> expected;
    for (QWidget *widget : Shown(window)) {
        if (widget->focusPolicy() & Qt::TabFocus && widget->isEnabled() && !widget->focusProxy())
            expected.insert(widget);
        else if (qobject_cast<TBrowserControl *>(widget))
            expected.insert(widget);
    }
    ASSERT_FALSE(expected.isEmpty()) << window.objectName().toStdString();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window)) << window.objectName().toStdString();
    (*std::min_element(expected.cbegin(), expected.cend(), [](auto *a, auto *b) {
        return IsBefore(*a, *b);
    }))->setFocus(Qt::TabFocusReason);
    QWidget *start = Focused();
    QList<QWidget *> met;
    do {
        QWidget *at = Focused();
        ASSERT_TRUE(at) << window.objectName().toStdString();
        EXPECT_FALSE(met.contains(at)) << "a trap at " << Name(*at);
        if (met.contains(at))
            return;
        // The engine's widget joins the order late, so a page may come last.
        const bool isPage = qobject_cast<TBrowserControl *>(at);
        const bool isInOrder = met.isEmpty() || isPage || IsBefore(*met.last(), *at);
        EXPECT_TRUE(isInOrder) << Name(*met.last()) << " before " << Name(*at);
        met.append(at);
        expected.remove(at);
        // A page has stops of its own, the last of which leads out of it.
        for (int stop = 0; stop < 12 && Focused() == at; ++stop) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            if (qobject_cast<TBrowserControl *>(at))
                (void)WaitFor([&] { return Focused() != at; }, 120);
        }
    } while (Focused() != start);
    // Of buttons of which one is down, the tab key comes to one and the arrows to the others.
    const auto isNear = [&met](const QWidget *one) {
        const auto *button = qobject_cast<const QAbstractButton *>(one);
        return button && button->group() && std::any_of(met.cbegin(), met.cend(), [button](QWidget *other) {
                   return button->group()->buttons().contains(qobject_cast<QAbstractButton *>(other));
               });
    };
    for (const QWidget *missed : expected)
        EXPECT_TRUE(isNear(missed)) << "no tab leads to " << Name(*missed);
}

void CheckMnemonics(const QWidget &window)
{
    QMap<QString, std::string> taken;
    const auto take = [&taken](QMap<QString, std::string> &among, const QString &text, const std::string &who) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (key.isEmpty())
            return;
        EXPECT_FALSE(among.contains(key)) << key.toStdString() << " of " << among[key] << " and " << who;
        among.insert(key, who);
    };
    for (const QWidget *widget : Shown(window)) {
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            take(taken, button->text(), Name(*button));
        else if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->buddy())
            take(taken, label->text(), Name(*label));
        else if (const auto *tabs = qobject_cast<const QTabBar *>(widget))
            for (int tab = 0; tab < tabs->count(); ++tab)
                take(taken, tabs->tabText(tab), Name(*tabs));
    }
    for (const QMenu *menu : window.findChildren<QMenu *>()) {
        QMap<QString, std::string> inMenu;
        for (const QAction *action : menu->actions())
            take(inMenu, action->text(), action->objectName().toStdString());
    }
}

QSize TextSize(const QWidget &widget, const QString &text)
{
    return widget.fontMetrics().size(Qt::TextShowMnemonic, text);
}

void ExpectRoom(const QWidget &widget, QSize needed, QSize room, const QString &text)
{
    EXPECT_TRUE(needed.width() <= room.width() && needed.height() <= room.height())
        << Name(widget) << " cuts \"" << text.toStdString() << "\": " << needed.width() << " x " << needed.height()
        << " into " << room.width() << " x " << room.height();
}

/// No text cut off, nothing to press too small.
void CheckSizes(QWidget &window)
{
    for (const QWidget *widget : Shown(window)) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const auto *combo = qobject_cast<const QComboBox *>(widget);
        const auto *edit = qobject_cast<const QLineEdit *>(widget);
        const auto *label = qobject_cast<const QLabel *>(widget);
        const bool isControl = button || combo || edit || (label && TakesInput(*label));
        if (isControl) {
            EXPECT_GE(widget->height(), LeastSide) << Name(*widget);
            EXPECT_GE(widget->width(), LeastSide) << Name(*widget);
        }
        if (isControl || label) {
            const QRect place(widget->mapTo(&window, QPoint()), widget->size());
            EXPECT_TRUE(window.rect().contains(place)) << Name(*widget) << " stands outside";
        }
        if (button) {
            ExpectRoom(*button, button->text().isEmpty() ? QSize() : button->sizeHint(), button->size(),
                       button->text());
        } else if (label && !label->text().isEmpty() && label->textFormat() != Qt::RichText) {
            const QSize hint = label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
            ExpectRoom(*label, hint, label->size(), label->text());
        } else if (combo && !combo->isEditable()) {
            QStyleOptionComboBox option;
            option.initFrom(combo);
            const QSize room = combo->style()
                                   ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo)
                                   .size();
            const int picture = combo->itemIcon(0).isNull() ? 0 : combo->iconSize().width() + 4;
            for (int item = 0; item < combo->count() && combo->objectName() != u"cbFontName"_s; ++item)
                ExpectRoom(*combo, TextSize(*combo, combo->itemText(item)) + QSize(picture, 0), room,
                           combo->itemText(item));
        } else if (edit) {
            ExpectRoom(*edit, TextSize(*edit, u"Ậ"_s + edit->placeholderText()), edit->size(), edit->placeholderText());
        } else if (const auto *tabs = qobject_cast<const QTabBar *>(widget)) {
            for (int tab = 0; tab < tabs->count(); ++tab) {
                ExpectRoom(*tabs, TextSize(*tabs, tabs->tabText(tab)), tabs->tabRect(tab).size(), tabs->tabText(tab));
                EXPECT_GE(tabs->tabRect(tab).height(), LeastSide) << Name(*tabs);
                EXPECT_TRUE(tabs->rect().contains(tabs->tabRect(tab))) << Name(*tabs);
            }
        } else if (const auto *grid = qobject_cast<const TcxGridDBTableView *>(widget)) {
            const QHeaderView &header = *grid->horizontalHeader();
            EXPECT_GE(grid->DataRowHeight(), grid->fontMetrics().height()) << Name(*grid);
            for (int section = 0; section < header.count() && !header.isHidden(); ++section) {
                const QString text = header.model()->headerData(section, Qt::Horizontal).toString();
                if (!header.isSectionHidden(section))
                    ExpectRoom(header, TextSize(header, text), {header.sectionSize(section), header.height()}, text);
            }
        } else if (const auto *tree = qobject_cast<const TDBTreeList *>(widget)) {
            EXPECT_GE(tree->visualRect(tree->currentIndex()).height(), tree->fontMetrics().height());
        }
    }
}

/// A line that is thin to see has room around it that takes hold of it, and no more.
void CheckSplitters(const QWidget &window)
{
    for (const QSplitter *splitter : window.findChildren<QSplitter *>()) {
        QWidget *handle = splitter->handle(1);
        const QPoint middle = handle->mapTo(&window, handle->rect().center());
        int caught = 0;
        for (int x = -8; x <= 8; ++x)
            caught += window.childAt(middle + QPoint(x, 0)) == handle;
        EXPECT_GE(caught, 5) << Name(*splitter);
        EXPECT_LE(caught, 7) << Name(*splitter);
        EXPECT_LE(splitter->handleWidth(), 2) << Name(*splitter);
    }
}

void AddCommands(const QMenu &menu, QSet<const QAction *> &commands)
{
    for (const QAction *action : menu.actions()) {
        commands.insert(action);
        if (action->menu())
            AddCommands(*action->menu(), commands);
    }
}

/// What a keyboard alone does: a control that the tab key comes to, a key, or a menu that opens from one.
void CheckKeyboard(const QWidget &window, const QStringList &menus, const QStringList &others)
{
    QSet<const QAction *> reached;
    for (const QString &menu : menus)
        AddCommands(*window.findChild<QMenu *>(menu), reached);
    for (const QWidget *widget : Shown(window)) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        if (!button)
            continue;
        const bool isReached = button->focusPolicy() & Qt::TabFocus || !button->shortcut().isEmpty() || button->group();
        EXPECT_TRUE(isReached) << Name(*button) << " wants a mouse";
        const auto *tool = qobject_cast<const QToolButton *>(button);
        const auto *boxed = qobject_cast<const TcxButton *>(button);
        if (tool && tool->menu())
            AddCommands(*tool->menu(), reached);
        reached.insert(boxed ? boxed->Action() : tool ? tool->defaultAction() : nullptr);
    }
    for (const QAction *action : window.findChildren<QAction *>(QRegularExpression(u"^[^_]"_s))) {
        const QString name = action->objectName();
        const bool isMeant = action->isVisible() && action->isEnabled() && !name.isEmpty() && !others.contains(name);
        EXPECT_TRUE(!isMeant || reached.contains(action) || !action->shortcut().isEmpty()) << name.toStdString();
    }
}

/// Nothing of the tray is needed, names in two languages are toggles of one menu, and notes do nothing.
const QStringList WithoutKeys{u"acExit"_s,    u"acNotes"_s,   u"acNameVIE"_s,
                              u"acNamePAL"_s, u"acNameENG"_s, u"acNameVietPali"_s};

PlatformDoors RealDoors()
{
    static const PlatformDoors doors = Doors();
    return doors;
}

class Access : public MarksWindow
{
protected:
    Access()
    {
        QFile english(ProductFolder() + u"English.lng"_s), skins(ProductFolder() + u"AllSkins.skinres"_s);
        EXPECT_TRUE(english.open(QIODevice::ReadOnly) && skins.open(QIODevice::ReadOnly));
        AddLanguage(u"English.lng"_s, english.readAll());
        SetSkins(skins.readAll());
        const QString words = QFileInfo(program).path() + u"/PALIDICT.FDB"_s;
        QFile::remove(words);
        EXPECT_TRUE(QFile::copy(ProductFolder() + u"PALIDICT.FDB"_s, words));
    }
    ~Access() override
    {
        End();
        QFile::remove(QFileInfo(program).path() + u"/PALIDICT.FDB"_s);
        TdxSkinController controller;
        controller.NativeStyle = true;
        controller.Refresh();
    }

    void Walk(QWidget &window)
    {
        QApplication::sendPostedEvents();
        Pause(50); // for layouts and the engine
        for (QWidget *widget : Shown(window)) {
            const bool isPage = qobject_cast<TBrowserControl *>(widget);
            if ((!TakesInput(*widget) && !isPage) || widget->focusProxy() || qobject_cast<QTabBar *>(widget))
                continue;
            const QString name = AccessibleName(*widget);
            EXPECT_FALSE(name.trimmed().isEmpty()) << Name(*widget) << " has no name";
            EXPECT_NE(name, widget->objectName());
            const QString other = InterfaceLang == 0 ? QString() : names.value(Name(*widget));
            EXPECT_NE(name, other) << Name(*widget) << " is named in one language alone";
            if (InterfaceLang == 0)
                names.insert(Name(*widget), name);
        }
        CheckMnemonics(window);
        CheckSizes(window);
        CheckSplitters(window);
        CheckTabOrder(window);
    }

    /// Runs what shows a modal window, and the walk inside.
    void WalkModal(const QString &name, const std::function<void()> &show)
    {
        bool hasWalked = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            if (!modal || modal->objectName() != name)
                return;
            poll.stop();
            hasWalked = true;
            Walk(*modal);
            modal->close();
        });
        poll.start(10);
        show();
        EXPECT_TRUE(hasWalked) << name.toStdString();
    }

    void WalkAll()
    {
        Walk(*window);
        CheckKeyboard(*window, {u"ppContent"_s, u"ppTreeKelora"_s}, WithoutKeys);
        const std::pair<const char *, QString> forms[] = {{"acDictionary", u"frmDictionary"_s},
                                                          {"acSearchSutas", u"frmSearchSutas"_s},
                                                          {"acOrganization", u"frmFocusHighlight"_s}};
        for (const auto &[command, name] : forms) {
            Trigger(command);
            QWidget *form = FindForm(name);
            ASSERT_TRUE(form) << command;
            ASSERT_TRUE(QTest::qWaitForWindowActive(form));
            Walk(*form);
            CheckKeyboard(*form, name == u"frmDictionary"_s ? QStringList{u"ppContent"_s} : QStringList(), {});
            form->close();
            EXPECT_TRUE(WaitFor([&] { return !FindForm(name); }));
        }
        MarkAll([this](TfrmFocusEdit &editor) { Walk(editor); });
        Trigger("acFindDialog");
        auto *find = window->findChild<QDialog *>(u"dlgFind"_s);
        find->findChild<QLineEdit *>(u"edFindText"_s)->setText(u"kinh"_s);
        Walk(*find);
        find->close();
        for (int sheet = 0; sheet < 2; ++sheet) {
            TfrmOptions options(window.get());
            options.show();
            options.findChild<QTabWidget *>()->setCurrentIndex(sheet);
            Walk(options);
        }
        TfrmGioithieu about(window.get());
        about.show();
        EXPECT_TRUE(WaitFor([&] { return about.findChild<TBrowserControl *>()->IsComplete(); }));
        Walk(about);
        about.close();
        WalkModal(u"msgBox"_s, [] { RealDoors().messageBox(u"Lumivara"_s, u"?"_s, BoxButtons::YesNo, BoxIcon::None); });
    }

    QMap<std::string, QString> names; ///< of the controls in Vietnamese
};

const PlatformDoors keepsRealDoors = RealDoors();

/// Opens a menu by the keyboard: by the key, or by the event that the desktop makes of the menu key.
bool OpensMenu(QWidget &control, bool isMenuKey)
{
    control.setFocus(Qt::TabFocusReason);
    QWidget *focus = QApplication::focusWidget();
    if (!focus)
        return false;
    const bool isPage = Focused() != focus;
    if (!isMenuKey) {
        QTest::keyClick(focus, Qt::Key_F10, Qt::ShiftModifier);
    } else if (isPage) {
        QTest::keyClick(focus, Qt::Key_Menu);
    } else {
        const QPoint middle = focus->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, focus->mapToGlobal(middle));
        QApplication::sendEvent(focus, &event);
    }
    const bool isOpen = WaitFor([] { return QApplication::activePopupWidget() != nullptr; }, 1000);
    while (QWidget *menu = QApplication::activePopupWidget())
        menu->close();
    return isOpen;
}

} // namespace

TEST_F(Access, EachWindow)
{
    Open();
    AddMark(*AnotherCopy(), u"giới"_s);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Find<TBarCombo>("bcbInterface").SetItemIndex(24);
    WalkAll();
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    ASSERT_EQ(InterfaceLang, 1);
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
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    for (const char *name : {"dbtSutas", "edFilterSutta", "ebContent"}) {
        for (const bool isMenuKey : {true, false})
            EXPECT_TRUE(OpensMenu(Find<QWidget>(name), isMenuKey))
                << name << (isMenuKey ? ", menu key" : ", Shift+F10");
    }
}

TEST_F(Access, RowsSayWhatTheyShow)
{
    Open();
    const auto row = [this] { return QAccessible::queryAccessibleInterface(&Tree())->focusChild(); };
    ASSERT_TRUE(row());
    EXPECT_EQ(row()->text(QAccessible::Name), u"Giới thứ nhất"_s);
    EXPECT_EQ(row()->text(QAccessible::Description), QString());
    Trigger("acNamePAL");
    EXPECT_EQ(row()->text(QAccessible::Name), u"Paṭhama"_s);
    Tree().setCurrentIndex(Tree().currentIndex().parent());
    EXPECT_EQ(row()->text(QAccessible::Name), u"Pārājika"_s);
    EXPECT_EQ(row()->text(QAccessible::Description), u"đang mở"_s);
    QTest::keyClick(&Tree(), Qt::Key_Left);
    EXPECT_EQ(row()->text(QAccessible::Description), u"đang đóng"_s);

    AddMark(*AnotherCopy(), u"giới"_s);
    OpenMarks();
    auto &grid = InMarks<TcxGridDBTableView>("gtvFocus");
    const QAbstractItemModel &model = *grid.model();
    const auto said = [&model](int column) { return model.index(0, column).data(Qt::AccessibleTextRole).toString(); };
    QComboBox &priorities = InMarks<QComboBox>("edPriority");
    EXPECT_EQ(said(0), priorities.currentText()) << "a picture alone says nothing";
    EXPECT_EQ(said(0), u"Cao"_s);
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    EXPECT_EQ(said(0), u"High"_s);
    QAccessibleInterface *cell = QAccessible::queryAccessibleInterface(&grid)->tableInterface()->cellAt(0, 1);
    EXPECT_EQ(cell->text(QAccessible::Name), u"giới"_s);

    // The marks of the priorities differ in shape: half of what either covers is not the other's.
    QList<QImage> shapes;
    for (const int priority : {1, 2, 4})
        shapes.append(priorities.itemIcon(priorities.findData(priority))
                          .pixmap(32, 32)
                          .toImage()
                          .convertToFormat(QImage::Format_Alpha8));
    for (int one = 0; one < shapes.size(); ++one) {
        for (int other = 0; other < one; ++other) {
            int either = 0, both = 0;
            for (int pixel = 0; pixel < 32 * 32; ++pixel) {
                const bool a = qAlpha(shapes[one].pixel(pixel % 32, pixel / 32)) > 127;
                const bool b = qAlpha(shapes[other].pixel(pixel % 32, pixel / 32)) > 127;
                either += a || b;
                both += a && b;
            }
            EXPECT_GT(either, 50);
            EXPECT_LT(both, either * 3 / 4) << one << " and " << other;
        }
    }
}
