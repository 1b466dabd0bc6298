#include "toolkit/controls/VelthuisTyping.h"

#include "toolkit/program/Guard.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <utility>

VelthuisTyping::VelthuisTyping(QLineEdit &box, std::function<std::optional<QChar>()> niggahita)
    : QObject(&box), m_box(box), m_niggahita(std::move(niggahita))
{
    box.installEventFilter(this);
    ConnectGuarded(&box, &QLineEdit::textEdited, this, [this] { Edited(); });
}

bool VelthuisTyping::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        const bool isPlain = !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
        m_key = Key::Other;
        if (isPlain && key.key() == Qt::Key_Backspace && !m_box.hasSelectedText())
            m_key = Key::Backspace;
        else if (isPlain && key.text().size() == 1 && key.text().front().isPrint())
            m_key = Key::Letter;
    } else if (event->type() == QEvent::InputMethod) {
        m_key = Key::Other;
    }
    return QObject::eventFilter(watched, event);
}

void VelthuisTyping::Edited()
{
    const Key key = std::exchange(m_key, Key::Other);
    const auto last = std::exchange(m_last, std::nullopt);
    const QString before = m_box.text().left(m_box.cursorPosition());
    if (key == Key::Backspace && last && before + last->letter == m_before)
        return Replace(0, last->typed);
    const auto niggahita = key == Key::Letter ? m_niggahita() : std::nullopt;
    if (!niggahita)
        return;
    const auto step = VelthuisStepAt(before, *niggahita);
    if (!step)
        return;
    Replace(step->typed.size(), step->letter); // comes here again
    m_last = step;
    m_before = before.chopped(step->typed.size()) + step->letter;
}

void VelthuisTyping::Replace(qsizetype length, const QString &text)
{
    m_box.setSelection(m_box.cursorPosition() - int(length), int(length));
    m_box.insert(text);
}
