#pragma once

class TdxLayoutItem;

/// The layout items that both windows of marks have.
struct MarkItems
{
    TdxLayoutItem *title;
    TdxLayoutItem *priority;
    TdxLayoutItem *keyword;
    TdxLayoutItem *description;
};

struct MarkCaptions
{
    const char16_t *title, *priority, *keyword, *description;
};

/// Sets the captions that no language file changes: in Vietnamese or English, for other languages as designed.
void ShowMarkCaptions(const MarkItems &items, const MarkCaptions &designed, const MarkCaptions &vietnamese);
