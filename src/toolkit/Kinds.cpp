#include "toolkit/Kinds.h"

#include "toolkit/LayoutItem.h"

void TdxLayoutControl::SetCaptionFont(const QFont &font)
{
    for (TdxLayoutItem *item : findChildren<TdxLayoutItem *>())
        item->SetCaptionFont(font);
}
