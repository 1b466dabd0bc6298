#pragma once

#include <QObject>

#include <functional>
#include <optional>

class QKeyEvent;
class QLineEdit;

/// Turns Velthuis letters into Pāli ones while they are typed into a box; see base/Velthuis.h. Backspace right after a
/// step takes it back, and so does undo. Texts of input methods, pasted ones and keys with Ctrl or Alt are left alone.
/// The box handles every key first, so what else listens to its keys hears all of them, and finds the new letters when
/// a key is released. The box owns it.
class VelthuisTyping : public QObject
{
    Q_OBJECT
public:
    /// `isMeant` tells whether Pāli is typed now; `niggahita` gives the letter for ".m", and is not asked before one is
    /// typed.
    VelthuisTyping(QLineEdit &box, std::function<bool()> isMeant, std::function<QChar()> niggahita);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Key { Other, Letter, Backspace };
    /// How the box stands once Backspace has deleted the letter of the last step.
    struct LastStep
    {
        QString text;
        int cursor;
    };

    Key MeaningOf(const QKeyEvent &event) const;
    void Edited();
    void LetterTyped();
    void LeaveUndoneLetters();

    QLineEdit &m_box;
    std::function<bool()> m_isMeant;
    std::function<QChar()> m_niggahita;
    Key m_key = Key::Other; ///< the key that the box handles
    QChar m_typed;          ///< its letter
    bool m_isStepping = false;
    std::optional<LastStep> m_last; ///< nothing has come after it
};
