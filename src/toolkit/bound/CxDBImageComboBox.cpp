#include "toolkit/bound/CxDBImageComboBox.h"

#include "stores/data/Field.h"
#include "toolkit/program/Guard.h"

#include <QWheelEvent>

TcxDBImageComboBox::TcxDBImageComboBox(QWidget *parent) : QComboBox(parent), m_link([this] { ShowField(); })
{
    setFocusPolicy(Qt::StrongFocus);
    ConnectGuarded(this, &QComboBox::activated, this, [this](int index) { TakeChoice(index); });
}

void TcxDBImageComboBox::AddItem(int value, const QIcon &image)
{
    addItem(image, QString(), value);
    ShowDescriptions();
    ShowField();
}

void TcxDBImageComboBox::ShowDescriptions()
{
    for (int index = 0; index < count(); ++index) {
        const QByteArray name = QStringLiteral("Properties.Items[%1].Description").arg(index).toLatin1();
        setItemText(index, property(name.constData()).toString());
    }
}

bool TcxDBImageComboBox::event(QEvent *event)
{
    if (event->type() == QEvent::DynamicPropertyChange)
        ShowDescriptions();
    return QComboBox::event(event);
}

void TcxDBImageComboBox::wheelEvent(QWheelEvent *event)
{
    // The wheel scrolls past the combo and must not change its value.
    event->ignore();
}

void TcxDBImageComboBox::ShowField()
{
    const TField *field = m_link.Field();
    const QVariant value = field ? field->Value() : QVariant();
    setCurrentIndex(value.isNull() ? -1 : findData(value));
}

void TcxDBImageComboBox::TakeChoice(int index)
{
    const TField *field = m_link.Field();
    const QVariant chosen = itemData(index);
    if (field && field->Value() == chosen)
        return;
    m_link.Write([&chosen](TField &target) { target.SetAsInteger(chosen.toInt()); });
}
