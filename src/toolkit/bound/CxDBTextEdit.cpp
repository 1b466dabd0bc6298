#include "toolkit/bound/CxDBTextEdit.h"

#include "stores/data/Field.h"
#include "toolkit/program/Guard.h"

#include <QScopedValueRollback>

namespace {

constexpr int anySize = 32767;

} // namespace

TcxDBTextEdit::TcxDBTextEdit(QWidget *parent) : QLineEdit(parent), m_link([this] { ShowField(); })
{
    ConnectGuarded(this, &QLineEdit::textChanged, this, [this] { TakeText(); });
    ShowField();
}

void TcxDBTextEdit::ShowField()
{
    const QScopedValueRollback showing(m_isShowing, true);
    const TField *field = m_link.Field();
    setReadOnly(!m_link.CanEdit());
    setMaxLength(field && field->Size() > 0 ? field->Size() : anySize);
    const QString value = field ? field->AsString() : QString();
    const bool isSame = value == text();
    // Undo must not bring text of one row into another.
    if (isSame && (m_link.IsEditing() || !isUndoAvailable()))
        return;
    const int position = isSame ? cursorPosition() : 0;
    setText(value);
    setCursorPosition(position);
}

void TcxDBTextEdit::TakeText()
{
    if (m_isShowing)
        return;
    DropHalfPairs();
    m_link.Write([this](TField &field) { field.SetAsString(text()); });
}

void TcxDBTextEdit::DropHalfPairs()
{
    // QLineEdit cuts at its maximum length, even inside a surrogate pair.
    QString kept = text();
    if (kept.size() < maxLength())
        return;
    for (qsizetype at = kept.size() - 1; at >= 0; --at) {
        if (kept[at].isHighSurrogate() && (at + 1 == kept.size() || !kept[at + 1].isLowSurrogate()))
            kept.remove(at, 1);
    }
    if (kept == text())
        return;
    const QScopedValueRollback showing(m_isShowing, true);
    const int position = cursorPosition();
    setText(kept);
    setCursorPosition(position - 1);
}
