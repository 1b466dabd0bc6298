#pragma once

#include <QComboBox>

/// A combo of the system's fonts. Text and chosen item are independent: the name of a missing font is shown while no
/// item is chosen, and a name that differs from the list in case keeps its spelling. Names are shown in the window's
/// font, because many fonts have no glyphs for their own name.
class TcxFontNameComboBox : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(QString Text READ Text WRITE SetText)
    Q_PROPERTY(int ItemIndex READ ItemIndex)
public:
    explicit TcxFontNameComboBox(QWidget *parent = nullptr);

    /// The font's name as it was set, or the item chosen since.
    const QString &Text() const { return m_text; }
    /// Chooses the item of that name, ignoring case; none if the list lacks it. Calls no handler.
    void SetText(const QString &name);
    int ItemIndex() const { return currentIndex(); }
    /// An item of the list. Throws std::out_of_range for an index without one.
    QString Item(int index) const;

protected:
    void wheelEvent(QWheelEvent *event) override;

private:
    QString m_text;
};
