#include "marks/MarkCaptions.h"

#include "base/InterfaceLanguage.h"
#include "toolkit/controls/LayoutItem.h"

void ShowMarkCaptions(const MarkItems &items, const MarkCaptions &designed, const MarkCaptions &vietnamese)
{
    static constexpr MarkCaptions english{u"Title", u"Priority", u"Keywords", u"Description"};
    const MarkCaptions &captions = InterfaceLang == 0 ? vietnamese : InterfaceLang == 1 ? english : designed;
    items.title->SetCaption(QString::fromUtf16(captions.title));
    items.priority->SetCaption(QString::fromUtf16(captions.priority));
    items.keyword->SetCaption(QString::fromUtf16(captions.keyword));
    items.description->SetCaption(QString::fromUtf16(captions.description));
    TdxLayoutItem::AlignCaptions({items.title, items.keyword, items.description});
}
