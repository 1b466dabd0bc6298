#include "toolkit/CxGrid.h"

TcxGrid::TcxGrid(QWidget *parent) : QFrame(parent)
{
    setFrameShape(NoFrame);
}
