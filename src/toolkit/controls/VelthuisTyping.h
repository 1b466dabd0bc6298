#pragma once

#include "base/Velthuis.h"

#include <QObject>

#include <functional>
#include <optional>

class QLineEdit;

/// Turns Velthuis letters into Pali ones while they are typed into a box. Backspace right after a step takes it back.
/// Input methods, pasted text and keys with Ctrl or Alt are left alone. The box owns it.
class VelthuisTyping : public QObject
{
    Q_OBJECT
public:
    /// `niggahita` gives the letter for ".m" where Pali is meant now, else none.
    VelthuisTyping(QLineEdit &box, std::function<std::optional<QChar>()> niggahita);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Key { Other, Letter, Backspace };

    void Edited();
    void Replace(qsizetype length, const QString &text);

    QLineEdit &m_box;
    std::function<std::optional<QChar>()> m_niggahita;
    Key m_key = Key::Other;
    std::optional<VelthuisStep> m_last;
    QString m_before; ///< the text before the cursor after the last step
};
