#include "driver/Driver.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeySequence>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int PollMilliseconds = 20;
// The first frames of a page come after its load.
constexpr int FrameMilliseconds = 60;

/// The visible widget of that name, else a hidden one.
QWidget *FindWidget(const QString &name)
{
    QWidget *hidden = nullptr;
    const QList<QWidget *> widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        if (widget->objectName() != name)
            continue;
        if (widget->isVisible())
            return widget;
        hidden = widget;
    }
    return hidden;
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
    for (int tries = 0; tries < 40 && !isPlausible(window.frameMargins()); ++tries)
        QTest::qWait(PollMilliseconds);
    return window.geometry().marginsAdded(window.frameMargins());
}

QWidget *VisibleWidget(const QString &name)
{
    QWidget *widget = FindWidget(name);
    return widget && widget->isVisible() ? widget : nullptr;
}

Qt::KeyboardModifiers ModifiersOf(QStringList &words)
{
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    if (words.removeAll(u"ctrl"_s) > 0)
        modifiers |= Qt::ControlModifier;
    if (words.removeAll(u"shift"_s) > 0)
        modifiers |= Qt::ShiftModifier;
    return modifiers;
}

QString Printable(const QVariant &value)
{
    return value.toString().replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s);
}

} // namespace

Driver::Driver(QObject *parent) : QObject(parent), m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &Driver::ReadInput);
}

void Driver::ReadInput()
{
    char buffer[4096];
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count <= 0) {
        m_notifier.setEnabled(false);
        m_ended = true;
    } else {
        m_input.append(buffer, count);
    }
    qsizetype end;
    while ((end = m_input.indexOf('\n')) >= 0) {
        const QString line = QString::fromUtf8(m_input.left(end)).trimmed();
        m_input.remove(0, end + 1);
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        Command command;
        command.arguments = line.split(u' ', Qt::SkipEmptyParts);
        command.name = command.arguments.takeFirst();
        command.rest = line.section(u' ', 2);
        m_commands.enqueue(command);
    }
    Next();
}

void Driver::Next()
{
    if (m_busy || m_commands.isEmpty())
        return;
    m_busy = true;
    const Command command = m_commands.dequeue();
    // From the event loop: a command may run while a box of an earlier one is open.
    QTimer::singleShot(0, this, [this, command] { Run(command); });
}

void Driver::Answer(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
    m_busy = false;
    Next();
}

void Driver::Done(const QString &value)
{
    Answer(value.isEmpty() ? u"ok"_s : u"ok "_s + value);
}

void Driver::Fail(const QString &reason)
{
    Answer(u"error "_s + reason);
}

void Driver::WaitFor(const QString &what, std::function<bool()> condition, int seconds)
{
    QElapsedTimer clock;
    clock.start();
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this, what, condition, clock, seconds, timer] {
        const bool holds = condition();
        if (!holds && clock.elapsed() < seconds * 1000)
            return;
        timer->stop();
        timer->deleteLater();
        holds ? Done() : Fail(u"timed out: "_s + what);
    });
    timer->start(PollMilliseconds);
}

void Driver::Act(std::function<void()> action)
{
    QTimer::singleShot(0, this, std::move(action));
    Done();
}

void Driver::Run(const Command &command)
{
    static const QHash<QString, void (Driver::*)(const Command &)> commands{
        {u"click"_s, &Driver::Click},   {u"type"_s, &Driver::Type},
        {u"press"_s, &Driver::Press},   {u"trigger"_s, &Driver::Trigger},
        {u"get"_s, &Driver::Get},       {u"shot"_s, &Driver::Shot},
        {u"resize"_s, &Driver::Resize}, {u"wait-page"_s, &Driver::WaitPage},
        {u"script"_s, &Driver::Script}, {u"clear"_s, &Driver::Clear},
        {u"popup"_s, &Driver::Popup},   {u"select-row"_s, &Driver::SelectRow},
        {u"hover"_s, &Driver::Hover},
    };
    const QString name = command.arguments.value(0);
    if (const auto handler = commands.value(command.name)) {
        (this->*handler)(command);
    } else if (command.name == u"wait") {
        WaitFor(name, [name] { return VisibleWidget(name) != nullptr; });
    } else if (command.name == u"wait-gone") {
        WaitFor(name, [name] { return VisibleWidget(name) == nullptr; });
    } else if (command.name == u"pause") {
        QTimer::singleShot(name.toInt(), this, [this] { Done(); });
    } else if (command.name == u"focus") {
        QWidget *widget = VisibleWidget(name);
        if (!widget)
            return Fail(u"no visible widget "_s + name);
        widget->activateWindow();
        widget->setFocus();
        Done();
    } else if (command.name == u"close") {
        QWidget *widget = VisibleWidget(name);
        if (!widget)
            return Fail(u"no visible widget "_s + name);
        Act([widget = QPointer<QWidget>(widget)] {
            if (widget)
                widget->window()->close();
        });
    } else if (command.name == u"answer") {
        auto *box = qobject_cast<QMessageBox *>(VisibleWidget(u"msgBox"_s));
        if (!box)
            return Fail(u"no message box"_s);
        const auto wanted = name == u"yes" ? QMessageBox::Yes : name == u"no" ? QMessageBox::No : QMessageBox::Ok;
        if (!box->button(wanted))
            return Fail(u"the box has no such button"_s);
        Act([button = QPointer<QAbstractButton>(box->button(wanted))] {
            if (button)
                button->click();
        });
    } else {
        Fail(u"unknown command "_s + command.name);
    }
}

/// click NAME [left|right] [ctrl] [shift] [X Y]
void Driver::Click(const Command &command)
{
    QStringList words = command.arguments.mid(1);
    const Qt::KeyboardModifiers modifiers = ModifiersOf(words);
    const Qt::MouseButton button = words.removeAll(u"right"_s) > 0 ? Qt::RightButton : Qt::LeftButton;
    words.removeAll(u"left"_s);
    QWidget *widget = VisibleWidget(command.arguments.value(0));
    if (!widget)
        return Fail(u"no visible widget "_s + command.arguments.value(0));
    const QPoint point = words.size() == 2 ? QPoint(words[0].toInt(), words[1].toInt()) : widget->rect().center();
    Act([widget = QPointer<QWidget>(widget), button, modifiers, point] {
        if (!widget)
            return;
        QWidget *window = widget->window();
        QTest::mouseClick(window->windowHandle(), button, modifiers, widget->mapTo(window, point));
    });
}

/// hover NAME [X Y]: moves the mouse there, in two steps, as a hand would.
void Driver::Hover(const Command &command)
{
    QWidget *widget = VisibleWidget(command.arguments.value(0));
    if (!widget)
        return Fail(u"no visible widget "_s + command.arguments.value(0));
    const bool hasPoint = command.arguments.size() == 3;
    const QPoint point =
        hasPoint ? QPoint(command.arguments[1].toInt(), command.arguments[2].toInt()) : widget->rect().center();
    Act([widget = QPointer<QWidget>(widget), point] {
        for (const QPoint &step : {point - QPoint(2, 2), point})
            if (widget)
                QTest::mouseMove(widget->window()->windowHandle(), widget->mapTo(widget->window(), step));
    });
}

/// type NAME TEXT: letter by letter into the widget.
void Driver::Type(const Command &command)
{
    QWidget *widget = VisibleWidget(command.arguments.value(0));
    if (!widget)
        return Fail(u"no visible widget "_s + command.arguments.value(0));
    widget->activateWindow();
    widget->setFocus();
    for (const QChar letter : command.rest)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    Done();
}

/// clear NAME: selects what the box holds and deletes it.
void Driver::Clear(const Command &command)
{
    QWidget *widget = VisibleWidget(command.arguments.value(0));
    if (!widget)
        return Fail(u"no visible widget "_s + command.arguments.value(0));
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(widget, Qt::Key_Delete);
    Done();
}

/// popup MENU: opens a menu that has no button of its own, in the middle of the active window.
void Driver::Popup(const Command &command)
{
    auto *menu = qobject_cast<QMenu *>(FindWidget(command.arguments.value(0)));
    const QWidget *window = QApplication::activeWindow();
    if (!menu || !window)
        return Fail(u"no menu "_s + command.arguments.value(0));
    menu->popup(window->mapToGlobal(window->rect().center()));
    Done();
}

/// select-row NUMBER: moves the tree to a text, as the windows do.
void Driver::SelectRow(const Command &command)
{
    QObject *dataSet = FindObject(u"qryTreeSutas"_s);
    bool found = false;
    if (!dataSet ||
        !QMetaObject::invokeMethod(dataSet, "LocateExact", Q_RETURN_ARG(bool, found), Q_ARG(QString, u"ID_VIC"_s),
                                   Q_ARG(QVariant, command.arguments.value(0).toInt())))
        return Fail(u"no tree"_s);
    found ? Done() : Fail(u"no row "_s + command.arguments.value(0));
}

/// press KEYS: a key or chord such as Ctrl+F to whatever has the focus.
void Driver::Press(const Command &command)
{
    const QKeySequence keys(command.arguments.value(0));
    if (keys.isEmpty())
        return Fail(u"no key "_s + command.arguments.value(0));
    // Between a window that has closed and the one behind it nothing has the focus for a moment.
    for (int tries = 0; tries < 100 && !QApplication::activePopupWidget() && !QGuiApplication::focusWindow(); ++tries)
        QTest::qWait(PollMilliseconds);
    QWindow *window = QApplication::activePopupWidget() ? QApplication::activePopupWidget()->windowHandle()
                                                        : QGuiApplication::focusWindow();
    if (!window)
        return Fail(u"no window has the focus"_s);
    Act([window = QPointer<QWindow>(window), keys] {
        if (window)
            QTest::keyClick(window, keys[0].key(), keys[0].keyboardModifiers());
    });
}

/// trigger ACTION: as a menu or a bar would.
void Driver::Trigger(const Command &command)
{
    auto *action = qobject_cast<QAction *>(FindObject(command.arguments.value(0)));
    if (!action || !action->isEnabled())
        return Fail(u"no enabled action "_s + command.arguments.value(0));
    Act([action = QPointer<QAction>(action)] {
        if (action)
            action->trigger();
    });
}

/// get NAME PROPERTY
void Driver::Get(const Command &command)
{
    QObject *object = FindObject(command.arguments.value(0));
    if (!object)
        return Fail(u"no object "_s + command.arguments.value(0));
    Done(Printable(object->property(command.arguments.value(1).toLatin1().constData())));
}

/// shot FILE [NAME]: the whole screen, or what it shows where the widget's window is, frame included.
void Driver::Shot(const Command &command)
{
    QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
    if (const QString name = command.arguments.value(1); !name.isEmpty()) {
        const QWidget *widget = VisibleWidget(name);
        if (!widget)
            return Fail(u"no visible widget "_s + name);
        const QRect frame = FrameOf(*widget->window()->windowHandle());
        const qreal ratio = picture.devicePixelRatio();
        picture = picture.copy(QRect((QPointF(frame.topLeft()) * ratio).toPoint(), frame.size() * ratio));
    }
    if (picture.save(command.arguments.value(0)))
        Done();
    else
        Fail(u"can't save "_s + command.arguments.value(0));
}

/// resize NAME WIDTH HEIGHT: out of the maximised state too.
void Driver::Resize(const Command &command)
{
    QWidget *widget = VisibleWidget(command.arguments.value(0));
    if (!widget)
        return Fail(u"no visible widget "_s + command.arguments.value(0));
    widget->window()->showNormal();
    widget->window()->resize(command.arguments.value(1).toInt(), command.arguments.value(2).toInt());
    Done();
}

/// wait-page NAME: until the page has loaded.
void Driver::WaitPage(const Command &command)
{
    auto *view = qobject_cast<QWebEngineView *>(VisibleWidget(command.arguments.value(0)));
    if (!view)
        return Fail(u"no visible page "_s + command.arguments.value(0));
    // A load begins in a later turn of the event loop than the command that caused it.
    QTimer::singleShot(FrameMilliseconds, this, [this, view = QPointer<QWebEngineView>(view)] {
        WaitFor(u"the page"_s, [view] { return view && !view->page()->isLoading(); });
    });
}

/// script NAME TEXT: its value, from the isolated world.
void Driver::Script(const Command &command)
{
    auto *view = qobject_cast<QWebEngineView *>(FindWidget(command.arguments.value(0)));
    if (!view)
        return Fail(u"no page "_s + command.arguments.value(0));
    view->page()->runJavaScript(command.rest, QWebEngineScript::ApplicationWorld,
                                [this](const QVariant &value) { Done(Printable(value)); });
}
