#pragma once

class TdxLayoutItem;

/// The cells that both windows of the marks have.
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

/// Captions no language file changes: those of the interface's language, and as designed for any but the first two.
void ShowMarkCaptions(const MarkItems &items, const MarkCaptions &designed, const MarkCaptions &vietnamese);
