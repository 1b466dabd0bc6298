#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QGenericPlugin>
#include <QKeySequence>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QPointer>
#include <QQueue>
#include <QScreen>
#include <QSocketNotifier>
#include <QTest>
#include <QTimer>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <dlfcn.h>
#include <functional>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int PollMilliseconds = 20;
constexpr int PatienceMilliseconds = 30000;
constexpr int FrameMilliseconds = 800;

/// The visible widget of that name, else a hidden one.
QWidget *FindWidget(const QString &name)
{
    QWidgetList widgets = QApplication::allWidgets();
    widgets.removeIf([&name](const QWidget *widget) { return widget->objectName() != name; });
    const auto visible =
        std::find_if(widgets.cbegin(), widgets.cend(), [](auto *widget) { return widget->isVisible(); });
    return visible == widgets.cend() ? widgets.value(0) : *visible;
}

QWidget *VisibleWidget(const QString &name)
{
    QWidget *widget = FindWidget(name);
    return widget && widget->isVisible() ? widget : nullptr;
}

QObject *FindObject(const QString &name)
{
    if (QWidget *widget = FindWidget(name))
        return widget;
    const QList<QWidget *> windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        if (QObject *object = window->findChild<QObject *>(name))
            return object;
    return nullptr;
}

/// The window with its frame, as the desktop tells it: what the widget remembers of it may be old.
QRect FrameOf(const QWindow &window)
{
    const auto isPlausible = [](const QMargins &frame) {
        return std::min({frame.left(), frame.top(), frame.right(), frame.bottom()}) >= 0;
    };
    // While the desktop is at it, the toolkit reads odd margins.
    (void)QTest::qWaitFor([&] { return isPlausible(window.frameMargins()); }, FrameMilliseconds);
    return window.geometry().marginsAdded(window.frameMargins());
}

QString Printable(const QVariant &value)
{
    return value.toString().replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s);
}

/// Drives a program from outside through the toolkit's plug-in door: reads commands from standard input, line by line,
/// carries them out by real input events on widgets found by object name, and answers each with one line on standard
/// output, "ok …" or "error …". See docs/testing.md for the commands.
class Driver : public QObject
{
public:
    Driver() : m_notifier(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] { ReadInput(); });
    }

private:
    struct Command
    {
        QString verb;
        QStringList arguments;
        /// Everything behind the first argument, blanks included.
        QString rest;
        QString Name() const { return arguments.value(0); }
        /// The point that ends the command, else the middle.
        QPoint PointIn(const QWidget &widget) const
        {
            bool isX = false, isY = false;
            const QPoint point(arguments.value(arguments.size() - 2).toInt(&isX), arguments.last().toInt(&isY));
            return isX && isY ? point : widget.rect().center();
        }
    };

    void ReadInput()
    {
        char buffer[4096];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0)
            m_notifier.setEnabled(false);
        else
            m_input.append(buffer, count);
        qsizetype end;
        while ((end = m_input.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(m_input.left(end)).trimmed();
            m_input.remove(0, end + 1);
            if (line.isEmpty() || line.startsWith(u'#'))
                continue;
            QStringList words = line.split(u' ', Qt::SkipEmptyParts);
            const QString verb = words.takeFirst();
            m_commands.enqueue({verb, words, line.section(u' ', 2)});
        }
        Next();
    }
    void Next()
    {
        if (m_busy || m_commands.isEmpty())
            return;
        m_busy = true;
        // From the event loop: a command may run while a box of an earlier one is open.
        QTimer::singleShot(0, this, [this, command = m_commands.dequeue()] { Run(command); });
    }

    void Answer(const QString &line)
    {
        std::fprintf(stdout, "%s\n", qUtf8Printable(line));
        std::fflush(stdout);
        m_busy = false;
        Next();
    }
    void Done(const QString &value = {}) { Answer(value.isEmpty() ? u"ok"_s : u"ok "_s + value); }
    void Fail(const QString &reason) { Answer(u"error "_s + reason); }
    /// Goes on once the condition holds, by default with the answer, or fails when patience ends.
    void WaitFor(const QString &what, std::function<bool()> condition, std::function<void()> then = {})
    {
        if (!then)
            then = [this] { Done(); };
        QElapsedTimer clock;
        clock.start();
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this, what, condition, then, clock, timer] {
            const bool holds = condition();
            if (!holds && clock.elapsed() < PatienceMilliseconds)
                return;
            timer->stop();
            timer->deleteLater();
            holds ? then() : Fail(u"timed out: "_s + what);
        });
        timer->start(PollMilliseconds);
    }
    /// Answers first: an action may open a box and return only when that is answered.
    void Act(QObject *target, std::function<void()> action)
    {
        QTimer::singleShot(0, target, std::move(action));
        Done();
    }

    void Run(const Command &command)
    {
        using OnWidget = void (Driver::*)(const Command &, QWidget *);
        static const QHash<QString, OnWidget> onWidgets{
            {u"click"_s, &Driver::Click}, {u"hover"_s, &Driver::Hover},   {u"type"_s, &Driver::Type},
            {u"clear"_s, &Driver::Clear}, {u"resize"_s, &Driver::Resize}, {u"wait-page"_s, &Driver::WaitPage},
            {u"focus"_s, &Driver::Focus}, {u"close"_s, &Driver::Close},
        };
        using Alone = void (Driver::*)(const Command &);
        static const QHash<QString, Alone> others{
            {u"press"_s, &Driver::Press},
            {u"trigger"_s, &Driver::Trigger},
            {u"get"_s, &Driver::Get},
            {u"shot"_s, &Driver::Shot},
            {u"script"_s, &Driver::Script},
            {u"popup"_s, &Driver::Popup},
            {u"answer"_s, &Driver::Choose},
            {u"select-row"_s, &Driver::SelectRow},
            {u"die-at-write"_s, &Driver::DieAtWrite},
        };
        const QString name = command.Name();
        if (const auto handler = onWidgets.value(command.verb)) {
            QWidget *widget = VisibleWidget(name);
            widget ? (this->*handler)(command, widget) : Fail(u"no visible widget "_s + name);
        } else if (const auto alone = others.value(command.verb)) {
            (this->*alone)(command);
        } else if (command.verb == u"wait" || command.verb == u"wait-gone") {
            WaitFor(name, [name, isThere = command.verb == u"wait"] { return !VisibleWidget(name) != isThere; });
        } else if (command.verb == u"pause") {
            QTimer::singleShot(name.toInt(), this, [this] { Done(); });
        } else {
            Fail(u"unknown command "_s + command.verb);
        }
    }

    void Click(const Command &command, QWidget *widget)
    {
        Qt::KeyboardModifiers modifiers;
        modifiers.setFlag(Qt::ControlModifier, command.arguments.contains(u"ctrl"_s));
        modifiers.setFlag(Qt::ShiftModifier, command.arguments.contains(u"shift"_s));
        const auto button = command.arguments.contains(u"right"_s) ? Qt::RightButton : Qt::LeftButton;
        Act(widget, [widget, button, modifiers, point = command.PointIn(*widget)] {
            QWidget *window = widget->window();
            QTest::mouseClick(window->windowHandle(), button, modifiers, widget->mapTo(window, point));
        });
    }
    /// In two steps, as a hand would.
    void Hover(const Command &command, QWidget *widget)
    {
        Act(widget, [widget = QPointer(widget), point = command.PointIn(*widget)] {
            for (const QPoint &step : {point - QPoint(2, 2), point})
                if (widget)
                    QTest::mouseMove(widget->window()->windowHandle(), widget->mapTo(widget->window(), step));
        });
    }
    void Focus(const Command &, QWidget *widget)
    {
        widget->activateWindow();
        widget->setFocus();
        Done();
    }
    void Type(const Command &command, QWidget *widget)
    {
        widget->activateWindow();
        widget->setFocus();
        for (const QChar letter : command.rest)
            QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(letter), Qt::NoModifier);
        Done();
    }
    void Clear(const Command &, QWidget *widget)
    {
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(widget, Qt::Key_Delete);
        Done();
    }
    void Close(const Command &, QWidget *widget)
    {
        Act(widget, [widget] { widget->window()->close(); });
    }
    /// Out of the maximised state too.
    void Resize(const Command &command, QWidget *widget)
    {
        widget->window()->showNormal();
        widget->window()->resize(command.arguments.value(1).toInt(), command.arguments.value(2).toInt());
        Done();
    }
    void WaitPage(const Command &command, QWidget *widget)
    {
        auto *view = qobject_cast<QWebEngineView *>(widget);
        if (!view)
            return Fail(u"no page "_s + command.Name());
        // A load begins in a later turn of the event loop than the command that caused it, but before the engine
        // answers what it is asked now.
        const auto isDue = std::make_shared<bool>(false);
        const auto due = [isDue] { *isDue = true; };
        const auto ask = [this, page = QPointer(view->page()), due] {
            if (!page || page->isLoading())
                return due();
            // What was asked may go with the old page.
            connect(page.data(), &QWebEnginePage::loadStarted, this, due, Qt::SingleShotConnection);
            page->runJavaScript(u"0"_s, QWebEngineScript::ApplicationWorld, [due](const QVariant &) { due(); });
        };
        QMetaObject::invokeMethod(this, ask, Qt::QueuedConnection);
        WaitFor(u"the page"_s, [view = QPointer(view), isDue] { return *isDue && view && !view->page()->isLoading(); });
    }

    /// In the middle of the active window, for a menu that has no button of its own.
    void Popup(const Command &command)
    {
        auto *menu = qobject_cast<QMenu *>(FindWidget(command.Name()));
        const QWidget *window = QApplication::activeWindow();
        if (!menu || !window)
            return Fail(u"no menu "_s + command.Name());
        menu->popup(window->mapToGlobal(window->rect().center()));
        Done();
    }
    void SelectRow(const Command &command)
    {
        QObject *dataSet = FindObject(u"qryTreeSutas"_s);
        bool found = false;
        if (dataSet)
            QMetaObject::invokeMethod(dataSet, "LocateExact", Q_RETURN_ARG(bool, found), Q_ARG(QString, u"ID_VIC"_s),
                                      Q_ARG(QVariant, command.Name().toInt()));
        found ? Done() : Fail(u"no row "_s + command.Name());
    }
    void Press(const Command &command)
    {
        const QKeySequence keys(command.Name());
        if (keys.isEmpty())
            return Fail(u"no key "_s + command.Name());
        const auto focused = [] {
            const QWidget *popup = QApplication::activePopupWidget();
            return popup ? popup->windowHandle() : QGuiApplication::focusWindow();
        };
        // Between a window that has closed and the one behind it nothing has the focus for a moment.
        WaitFor(
            u"a window with the focus"_s, [focused] { return focused() != nullptr; },
            [this, focused, keys] {
                Act(focused(), [window = focused(), keys] {
                    QTest::keyClick(window, keys[0].key(), keys[0].keyboardModifiers());
                });
            });
    }
    void Trigger(const Command &command)
    {
        const QPointer<QAction> action = qobject_cast<QAction *>(FindObject(command.Name()));
        if (!action)
            return Fail(u"no action "_s + command.Name());
        // Many become enabled when the program is idle.
        WaitFor(
            u"the enabled action "_s + command.Name(), [action] { return action && action->isEnabled(); },
            [this, action] { Act(action, [action] { action->trigger(); }); });
    }
    void Choose(const Command &command)
    {
        auto *box = qobject_cast<QMessageBox *>(VisibleWidget(u"msgBox"_s));
        const QString name = command.Name();
        const auto wanted = name == u"yes" ? QMessageBox::Yes : name == u"no" ? QMessageBox::No : QMessageBox::Ok;
        QAbstractButton *button = box ? box->button(wanted) : nullptr;
        if (!button)
            return Fail(u"no message box with such a button"_s);
        Act(button, [button] { button->click(); });
    }
    void Get(const Command &command)
    {
        const QObject *object = FindObject(command.Name());
        if (!object)
            return Fail(u"no object "_s + command.Name());
        Done(Printable(object->property(command.arguments.value(1).toLatin1().constData())));
    }
    /// The whole screen, or what it shows where the widget's window is, frame included.
    void Shot(const Command &command)
    {
        QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
        const QString name = command.arguments.value(1);
        const QWidget *widget = VisibleWidget(name);
        if (!widget && !name.isEmpty())
            return Fail(u"no visible widget "_s + name);
        if (widget && !name.isEmpty()) {
            const QRect frame = FrameOf(*widget->window()->windowHandle());
            const qreal ratio = picture.devicePixelRatio();
            picture = picture.copy(QRect((QPointF(frame.topLeft()) * ratio).toPoint(), frame.size() * ratio));
        }
        picture.save(command.Name()) ? Done() : Fail(u"can't save "_s + command.Name());
    }
    /// By what the process was started with, see tests/crash/DieAtWrite.h.
    void DieAtWrite(const Command &command)
    {
        const auto arm = reinterpret_cast<int (*)(int)>(::dlsym(RTLD_DEFAULT, "DieAtWrite"));
        arm ? Done(QString::number(arm(command.Name().toInt()))) : Fail(u"started without the means"_s);
    }
    /// In the isolated world.
    void Script(const Command &command)
    {
        auto *view = qobject_cast<QWebEngineView *>(FindWidget(command.Name()));
        if (!view)
            return Fail(u"no page "_s + command.Name());
        view->page()->runJavaScript(command.rest, QWebEngineScript::ApplicationWorld,
                                    [this](const QVariant &value) { Done(Printable(value)); });
    }

    QByteArray m_input;
    QQueue<Command> m_commands;
    bool m_busy = false;
    QSocketNotifier m_notifier;
};

} // namespace

/// Loaded into the program by QT_QPA_GENERIC_PLUGINS=lumivara-driver; the program knows nothing of it.
class DriverPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driver.json")
public:
    QObject *create(const QString &, const QString &) override { return new Driver; }
};

#include "Driver.moc"
