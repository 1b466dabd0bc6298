#pragma once

#include <QComboBox>

#include <functional>

/// A combo on a bar or menu. OnChange runs when the chosen item changes: under the general guard if the user chose it,
/// directly if code did by SetItemIndex, so that a failure reaches that code. Adding items never runs it.
class TBarCombo : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(int ItemIndex READ ItemIndex WRITE SetItemIndex)
public:
    explicit TBarCombo(QWidget *parent = nullptr);

    /// Appends an item. The choice does not change, even if it is none.
    void AddItem(const QString &text);
    int ItemIndex() const { return currentIndex(); }
    /// Chooses an item, none (-1) for an index without an item. OnChange runs if the index differs from the last one
    /// asked for, even if no item has it.
    void SetItemIndex(int index);

    std::function<void()> OnChange;
};
