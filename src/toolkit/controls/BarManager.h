#pragma once

#include <QFont>
#include <QObject>

class QWidget;

/// Represents all bars and submenus of a window: their contents use its font.
class TdxBarManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QFont Font READ Font WRITE SetFont)
public:
    /// Manages the bars of `window`, which owns the manager.
    explicit TdxBarManager(QWidget *window);

    const QFont &Font() const { return m_font; }
    void SetFont(const QFont &font);

private:
    QWidget &m_window;
    QFont m_font;
};
