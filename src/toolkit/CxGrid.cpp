#include "toolkit/CxGrid.h"

#include "toolkit/CxGridDBTableView.h"

TcxGrid::TcxGrid(QWidget *parent) : QFrame(parent)
{
    setFrameShape(NoFrame);
}

TcxGridDBTableView *TcxGrid::View() const
{
    return findChild<TcxGridDBTableView *>();
}
