#pragma once

#include "base/Colour.h"

#include <QComboBox>

/// A combo of colours: X11's named colours by hue, as swatches without names, and last an item for any other colour.
/// Names are for tool tips and screen readers. Colours are settings values, so a system colour is returned as it was
/// set.
class TcxColorComboBox : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(uint ColorValue READ ColorValue WRITE SetColorValue)
    Q_PROPERTY(uint DefaultColor MEMBER m_defaultColor)
    Q_PROPERTY(QString OtherColorCaption READ OtherColorCaption WRITE SetOtherColorCaption)
public:
    explicit TcxColorComboBox(QWidget *parent = nullptr);

    /// The chosen colour; DefaultColor if there is none.
    Colour ColorValue() const;
    /// Chooses a colour. An unnamed one becomes an extra item, replacing the previous extra item.
    void SetColorValue(Colour colour);

    /// The text of the last item, which asks for any other colour.
    QString OtherColorCaption() const;
    void SetOtherColorCaption(const QString &caption);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void AddColour(int row, const QString &name, Colour colour);
    void TakeChoice(int index);

    Colour m_defaultColor = 0;
    int m_chosen = -1; ///< the last chosen item that is a colour
    bool m_isStepping = false;
};
