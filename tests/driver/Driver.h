#pragma once

#include <QObject>
#include <QPointer>
#include <QQueue>
#include <QSocketNotifier>
#include <QStringList>

#include <functional>

class QWidget;

/// Drives a program from outside through the toolkit's plug-in door: reads commands from standard input, line by line,
/// carries them out by real input events on widgets found by object name, and answers each with one line on standard
/// output, "ok …" or "error …". See docs/testing.md for the commands.
class Driver : public QObject
{
    Q_OBJECT
public:
    explicit Driver(QObject *parent = nullptr);

private:
    struct Command
    {
        QString name;
        QStringList arguments;
        /// Everything behind the first argument, blanks included.
        QString rest;
    };

    void ReadInput();
    void Next();
    void Run(const Command &command);
    void Answer(const QString &line);
    void Done(const QString &value = {});
    void Fail(const QString &reason);
    /// Answers once the condition holds, or fails after `seconds`.
    void WaitFor(const QString &what, std::function<bool()> condition, int seconds = 30);
    /// Answers first, then acts: an action may open a box and return only when that is answered.
    void Act(std::function<void()> action);

    void Click(const Command &command);
    void Hover(const Command &command);
    void Type(const Command &command);
    void Press(const Command &command);
    void Trigger(const Command &command);
    void Get(const Command &command);
    void Shot(const Command &command);
    void Resize(const Command &command);
    void WaitPage(const Command &command);
    void Script(const Command &command);
    void Clear(const Command &command);
    void Popup(const Command &command);
    void SelectRow(const Command &command);

    QByteArray m_input;
    QQueue<Command> m_commands;
    bool m_busy = false;
    bool m_ended = false;
    QSocketNotifier m_notifier;
};
