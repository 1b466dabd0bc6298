#include "toolkit/bound/CxDBLabel.h"

#include "stores/data/Field.h"

TcxDBLabel::TcxDBLabel(QWidget *parent) : QLabel(parent), m_link([this] { ShowField(); })
{
    setTextFormat(Qt::PlainText);
}

void TcxDBLabel::ShowField()
{
    const TField *field = m_link.CanEdit() ? m_link.Field() : nullptr;
    setText(field ? field->DisplayText() : QString());
}
