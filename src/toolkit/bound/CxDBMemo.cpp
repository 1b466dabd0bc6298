#include "toolkit/bound/CxDBMemo.h"

#include "stores/data/Field.h"
#include "toolkit/bound/FieldText.h"
#include "toolkit/program/Guard.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextDocument>

using namespace Qt::StringLiterals;

TcxDBMemo::TcxDBMemo(QWidget *parent) : QPlainTextEdit(parent), m_link([this] { ShowField(); }), m_lineEnd(u"\r\n"_s)
{
    setTabChangesFocus(true);
    ConnectGuarded(this, &QPlainTextEdit::textChanged, this, [this] { TakeText(); });
    ShowField();
}

QString TcxDBMemo::Text() const
{
    // toPlainText() would turn no-break spaces into blanks.
    return document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void TcxDBMemo::ShowField()
{
    const QScopedValueRollback showing(m_isShowing, true);
    const TField *field = m_link.Field();
    setReadOnly(!m_link.CanEdit());
    const QString value = field ? field->AsString() : QString();
    const QString lines = WithLineFeeds(value);
    m_lineEnd = LineEndOf(value);
    const bool isSame = lines == m_shown;
    // Undo must not bring text of one row into another.
    if (isSame && (m_link.IsEditing() || !document()->isUndoAvailable()))
        return;
    const int position = isSame ? textCursor().position() : 0;
    setPlainText(lines);
    m_shown = Text();
    QTextCursor cursor = textCursor();
    cursor.setPosition(position);
    setTextCursor(cursor);
}

void TcxDBMemo::TakeText()
{
    // Format changes are signalled, too; only a changed text is written.
    if (m_isShowing || Text() == m_shown)
        return;
    m_shown = Text();
    m_link.Write([this](TField &field) { field.SetAsString(WithLineEnds(m_shown, m_lineEnd)); });
}

QString TcxDBMemo::Fitting(const QString &inserted) const
{
    const TField *field = m_link.Field();
    if (!field || field->Size() <= 0)
        return inserted;
    const QString selected = textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n');
    const qsizetype kept = WithLineEnds(Text(), m_lineEnd).size() - WithLineEnds(selected, m_lineEnd).size();
    const QString lines = WithLineEnds(WithLineFeeds(inserted), m_lineEnd);
    QString fitting = FittingPart(lines, field->Size() - kept);
    // A CR without its LF is no line end.
    if (fitting.size() < lines.size() && fitting.endsWith(u'\r') && m_lineEnd.size() > 1)
        fitting.chop(1);
    return WithLineFeeds(fitting);
}

void TcxDBMemo::keyPressEvent(QKeyEvent *event)
{
    const bool isLineEnd = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QString typed = isLineEnd ? u"\n"_s : event->text();
    const bool isTyping = !typed.isEmpty() && (isLineEnd || typed.front().isPrint() || typed.front().isSurrogate());
    if (isTyping && Fitting(typed) != typed) {
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void TcxDBMemo::inputMethodEvent(QInputMethodEvent *event)
{
    const QString fitting = Fitting(event->commitString());
    if (fitting != event->commitString())
        event->setCommitString(fitting, event->replacementStart(), event->replacementLength());
    QPlainTextEdit::inputMethodEvent(event);
}

void TcxDBMemo::insertFromMimeData(const QMimeData *source)
{
    if (!isReadOnly() && source->hasText())
        textCursor().insertText(Fitting(source->text()));
    ensureCursorVisible();
}
