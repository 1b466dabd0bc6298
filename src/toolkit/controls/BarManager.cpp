#include "toolkit/controls/BarManager.h"

#include "toolkit/controls/Kinds.h"

TdxBarManager::TdxBarManager(QWidget *window) : QObject(window), m_window(*window), m_font(window->font()) {}

void TdxBarManager::SetFont(const QFont &font)
{
    m_font = font;
    for (TdxBar *bar : m_window.findChildren<TdxBar *>())
        bar->setFont(font);
    // Menus are top-level windows and do not inherit their owner's font.
    for (TdxBarSubItem *menu : m_window.findChildren<TdxBarSubItem *>())
        menu->setFont(font);
}
