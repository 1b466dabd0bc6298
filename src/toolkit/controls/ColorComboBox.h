#pragma once

#include "base/Colour.h"

#include <QComboBox>

/// A choice of a colour: the colours that X11 has names for, hue by hue, as swatches without their names, and behind
/// them any other. Names are for tool tips and for those who can't see a colour. Colours are values of the settings, so
/// that one that names a system colour comes back as it was set.
class TcxColorComboBox : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(uint ColorValue READ ColorValue WRITE SetColorValue)
    Q_PROPERTY(uint DefaultColor MEMBER m_defaultColor)
    Q_PROPERTY(QString OtherColorCaption READ OtherColorCaption WRITE SetOtherColorCaption)
public:
    explicit TcxColorComboBox(QWidget *parent = nullptr);

    /// The chosen colour; DefaultColor while none is.
    Colour ColorValue() const;
    /// Chooses a colour. One without a name becomes an item of its own, in place of the former such item.
    void SetColorValue(Colour colour);

    /// The words of the last item, which asks for any other colour.
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
    int m_chosen = -1; ///< the last item that is a colour
    bool m_isStepping = false;
};
