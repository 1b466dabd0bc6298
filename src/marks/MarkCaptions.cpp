#include "marks/MarkCaptions.h"

#include "base/Messages.h"
#include "toolkit/controls/LayoutItem.h"

namespace {

constexpr MarkCaptions englishCaptions{u"Title", u"Priority", u"Keywords", u"Description"};

} // namespace

void ShowMarkCaptions(const MarkItems &items, const MarkCaptions &designed, const MarkCaptions &vietnamese)
{
    const std::pair<TdxLayoutItem *, const char16_t * MarkCaptions::*> captions[]{
        {items.title, &MarkCaptions::title},
        {items.priority, &MarkCaptions::priority},
        {items.keyword, &MarkCaptions::keyword},
        {items.description, &MarkCaptions::description},
    };
    for (const auto &[item, caption] : captions)
        item->SetCaption(
            TextOr(QString::fromUtf16(designed.*caption), {vietnamese.*caption, englishCaptions.*caption}));
    TdxLayoutItem::AlignCaptions({items.title, items.keyword, items.description});
}
