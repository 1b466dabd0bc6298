#include "toolkit/bound/CxGrid.h"

TcxGrid::TcxGrid(QWidget *parent) : QFrame(parent)
{
    setFrameShape(NoFrame);
}
