#pragma once

#include <QFont>
#include <QObject>

class QWidget;

/// Stands for all bars and submenus of a window: what they hold shares its font.
class TdxBarManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QFont Font READ Font WRITE SetFont)
public:
    /// `window` is the one whose bars it manages, and its owner.
    explicit TdxBarManager(QWidget *window);

    const QFont &Font() const { return m_font; }
    void SetFont(const QFont &font);

private:
    QWidget &m_window;
    QFont m_font;
};
