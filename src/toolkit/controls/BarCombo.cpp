#include "toolkit/controls/BarCombo.h"

#include "toolkit/program/Guard.h"

#include <QSignalBlocker>

TBarCombo::TBarCombo(QWidget *parent) : QComboBox(parent)
{
    ConnectGuarded(this, &QComboBox::currentIndexChanged, this, [this] {
        if (OnChange)
            OnChange();
    });
}

void TBarCombo::AddItem(const QString &text)
{
    const QSignalBlocker quiet(this);
    const int chosen = currentIndex();
    addItem(text);
    setCurrentIndex(chosen);
}

void TBarCombo::SetItemIndex(int index)
{
    if (index == currentIndex())
        return;
    {
        const QSignalBlocker quiet(this);
        setCurrentIndex(index >= 0 && index < count() ? index : -1);
    }
    if (OnChange)
        OnChange();
}
