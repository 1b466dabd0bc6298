#include "toolkit/bound/CxGridDBColumn.h"

#include "toolkit/bound/CxGridDBTableView.h"

#include <algorithm>

TcxGridDBColumn::TcxGridDBColumn(TcxGridDBTableView *view) : QObject(view), m_view(*view)
{
    m_view.AddColumn(this);
}

void TcxGridDBColumn::SetCaption(const QString &caption)
{
    m_caption = caption;
    m_view.ShowCaptions();
}

void TcxGridDBColumn::SetFieldName(const QString &name)
{
    m_fieldName = name;
    m_view.Rebuild();
}

void TcxGridDBColumn::SetWidth(int width)
{
    m_width = std::max(width, 1);
    m_view.FillWidth();
}

void TcxGridDBColumn::SetVisible(bool visible)
{
    m_visible = visible;
    m_view.FillWidth();
}

void TcxGridDBColumn::SetFixed(bool fixed)
{
    m_isFixed = fixed;
    m_view.FillWidth();
}
