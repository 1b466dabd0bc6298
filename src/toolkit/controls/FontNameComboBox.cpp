#include "toolkit/controls/FontNameComboBox.h"

#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QSignalBlocker>
#include <QWheelEvent>

#include <stdexcept>

namespace {

constexpr int ShownRows = 16;
constexpr int ShownLetters = 12;

} // namespace

TcxFontNameComboBox::TcxFontNameComboBox(QWidget *parent) : QComboBox(parent)
{
    // A long name must not widen the window.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(ShownLetters);
    setMaxVisibleItems(ShownRows);
    setFocusPolicy(Qt::StrongFocus);
    const auto takeItem = [this](int index) {
        if (index >= 0)
            m_text = itemText(index);
    };
    RunGuarded([this] { addItems(Doors().fontNames()); });
    setCurrentIndex(-1);
    ConnectGuarded(this, &QComboBox::currentIndexChanged, this, takeItem);
    // Choosing the shown item again takes its spelling.
    ConnectGuarded(this, &QComboBox::activated, this, takeItem);
}

void TcxFontNameComboBox::SetText(const QString &name)
{
    const QSignalBlocker quiet(this);
    m_text = name;
    setCurrentIndex(findText(name, Qt::MatchFixedString));
    setPlaceholderText(currentIndex() < 0 ? name : QString());
    setAccessibleDescription(placeholderText());
}

QString TcxFontNameComboBox::Item(int index) const
{
    if (index < 0 || index >= count())
        throw std::out_of_range("List index out of bounds (" + std::to_string(index) + ")");
    return itemText(index);
}

void TcxFontNameComboBox::wheelEvent(QWheelEvent *event)
{
    // The wheel scrolls past the combo and must not change its font.
    event->ignore();
}
