#include "base/FilterKey.h"

#include <Qt>

FilterKey MeaningOfFilterKey(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return FilterKey::Nothing;
    case Qt::Key_Down:
        return FilterKey::NextRow;
    case Qt::Key_Up:
        return FilterKey::PriorRow;
    default:
        return FilterKey::Reload;
    }
}
