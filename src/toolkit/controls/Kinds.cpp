#include "toolkit/controls/Kinds.h"

#include "toolkit/controls/LayoutItem.h"

void TdxLayoutControl::SetCaptionFont(const QFont &font)
{
    for (TdxLayoutItem *item : findChildren<TdxLayoutItem *>())
        item->SetCaptionFont(font);
}
