#include "toolkit/controls/VelthuisTyping.h"

#include "base/Velthuis.h"
#include "toolkit/program/Guard.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <utility>

VelthuisTyping::VelthuisTyping(QLineEdit &box, std::function<bool()> isMeant, std::function<QChar()> niggahita)
    : QObject(&box), m_box(box), m_isMeant(std::move(isMeant)), m_niggahita(std::move(niggahita))
{
    box.installEventFilter(this);
    ConnectGuarded(&box, &QLineEdit::textEdited, this, [this] { Edited(); });
}

VelthuisTyping::Key VelthuisTyping::MeaningOf(const QKeyEvent &event) const
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return Key::Other;
    if (event.key() == Qt::Key_Backspace)
        return m_box.hasSelectedText() ? Key::Other : Key::Backspace;
    return event.text().size() == 1 && event.text().front().isPrint() ? Key::Letter : Key::Other;
}

bool VelthuisTyping::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        m_key = MeaningOf(key);
        m_typed = m_key == Key::Letter ? key.text().front() : QChar();
        if (m_key != Key::Backspace)
            m_last.reset();
        break;
    }
    // What changes the text without a key, among them what is pasted by the mouse.
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::ContextMenu:
    case QEvent::Drop:
        m_last.reset();
        m_key = Key::Other;
        break;
    case QEvent::KeyRelease:
        m_key = Key::Other;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void VelthuisTyping::Edited()
{
    if (m_isStepping)
        return;
    const QScopedValueRollback stepping(m_isStepping, true);
    const Key key = std::exchange(m_key, Key::Other);
    const auto last = std::exchange(m_last, std::nullopt);
    if (key == Key::Backspace && last && m_box.text() == last->text && m_box.cursorPosition() == last->cursor) {
        m_box.undo(); // what the key deleted
        m_box.undo();
        LeaveUndoneLetters();
    } else if (m_isMeant()) {
        if (key == Key::Letter)
            LetterTyped();
        else if (key == Key::Other)
            LeaveUndoneLetters();
    }
}

void VelthuisTyping::LetterTyped()
{
    const int cursor = m_box.cursorPosition();
    const QString text = m_box.text();
    if (cursor < 2 || text[cursor - 1] != m_typed)
        return; // refused, or more than a letter
    const auto step = VelthuisStepAt(QStringView(text).first(cursor - 1), m_typed, m_niggahita);
    if (!step)
        return;
    const int begin = cursor - static_cast<int>(step->typed.size());
    m_box.setSelection(begin, cursor - begin);
    m_box.insert(step->letter);
    m_last = {QString(text).remove(begin, cursor - begin), begin};
}

void VelthuisTyping::LeaveUndoneLetters()
{
    // Undo selects what a step replaced, as it stood selected then: the next letter would replace it.
    const int end = m_box.selectionEnd();
    if (!m_box.hasSelectedText() || m_box.selectionLength() != 2 || m_box.cursorPosition() != end)
        return;
    const QString text = m_box.text();
    const auto anyLetter = [] { return QChar(Niggahitas[0]); };
    if (VelthuisStepAt(QStringView(text).first(end - 1), text[end - 1], anyLetter))
        m_box.deselect();
}
