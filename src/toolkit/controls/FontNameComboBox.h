#pragma once

#include <QComboBox>

/// A choice among the fonts of the system. Text and chosen item are two things: a name that the system lacks is shown
/// while no item is chosen, and a name in other letters than the list's keeps them. Names are shown in the window's
/// font, because many fonts have no letters for their own name.
class TcxFontNameComboBox : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(QString Text READ Text WRITE SetText)
    Q_PROPERTY(int ItemIndex READ ItemIndex)
public:
    explicit TcxFontNameComboBox(QWidget *parent = nullptr);

    /// The font's name as it was set, or the item that was chosen since.
    const QString &Text() const { return m_text; }
    /// Chooses the item of that name, whatever its case; none if the list lacks it. Tells nobody.
    void SetText(const QString &name);
    int ItemIndex() const { return currentIndex(); }
    /// An item of the list. Throws std::out_of_range with the list's words for an index without one.
    QString Item(int index) const;

protected:
    void wheelEvent(QWheelEvent *event) override;

private:
    QString m_text;
};
