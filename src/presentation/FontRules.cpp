#include "presentation/FontRules.h"

#include "base/Colour.h"
#include "presentation/GlobalInterface.h"

#include <algorithm>

QString BaseFontName;
int BaseFontSize = 0;
int StyleColorIndex = 0;

namespace {

using enum FontPlace;
using enum FontStart;

const Colour emphasised = LabelColors[0];
constexpr Colour grey = 0xA4A0A0;
constexpr Colour navy = 0x800000;
constexpr Colour maroon = 0x000080;

struct Kind
{
    const char *name;
    bool isForAnyTag = true;
    FontRule rule = {}; ///< for any Tag
};

struct TaggedRule
{
    const char *kind;
    int tag;
    FontRule rule;
};

// The order decides if a control is of two kinds.
const Kind kinds[] = {
    {"TPanel", true, {.place = Font}},
    {"TcxDBLabel", false},
    {"TdxLayoutControl", false},
    {"TDBAdvGrid", true, {.place = Columns, .smoothsAgain = true}},
    {"TcxGrid", true, {.place = Font}},
    {"TcxDBTextEdit", true, {.place = StyleFont}},
    {"TEdit", true, {.place = Font}},
    {"TMemo", true, {.place = Font}},
    {"TDBMemo", true, {.place = Font}},
    {"TLabel", true, {.place = Font}},
    {"TcxLabel", false},
    {"TcxButton", false},
    {"TcxButtonEdit", false},
    {"TcxTextEdit", false},
    {"TcxMemo", false},
    {"TcxDBMemo", false},
    {"TcxComboBox", true, {.place = StyleFont}},
    {"TcxPopupEdit", true, {.place = StyleFont}},
    {"TcxSpinEdit", true, {.place = StyleFont}},
    {"TcxTimeEdit", true, {.place = StyleFont}},
    {"TcxDateEdit", true, {.place = StyleFont}},
    {"TcxDBImageComboBox", true, {.place = StyleFont}},
    {"TcxPageControl", true, {.place = Font}},
    {"TdxDockPanel", true, {.place = Font}},
    {"TdxBarManager", true, {.place = ManagedItems, .smoothsAgain = true}},
    {"TdxBar", true, {.place = Bar}},
    {"TdxBarPopupMenu", true, {.place = Menu}},
};

constexpr FontRule plain{.place = StyleFont};
constexpr FontRule greyEdit{.place = StyleFont, .smoothsAgain = true, .textColour = grey};

constexpr FontRule Heading(int percent)
{
    return {.place = StyleFont, .start = Designed, .sizePercent = percent, .smoothsAgain = true};
}

constexpr FontRule Cool(int percent, Colour colour, int depth)
{
    FontRule rule = Heading(percent);
    rule.textColour = colour;
    rule.effectDepth = depth;
    return rule;
}

constexpr FontRule Label(int percent, bool addsItalic, std::optional<Colour> colour = {})
{
    return {.place = StyleFont,
            .start = BaseName,
            .sizePercent = percent,
            .addsItalic = addsItalic,
            .smoothsAgain = true,
            .textColour = colour};
}

const TaggedRule taggedRules[] = {
    {"TcxDBLabel", 0, plain},
    {"TcxDBLabel", 10, Label(100, true)},
    {"TcxDBLabel", -1, Label(90, true)},
    {"TdxLayoutControl", 1, {.place = Captions, .sizePercent = 100, .smoothsAgain = true}},
    {"TcxLabel", 0, plain},
    {"TcxLabel", 10, Label(100, true)},
    {"TcxLabel", 1, Label(100, false, emphasised)},
    {"TcxLabel", 11, Label(110, false, emphasised)},
    {"TcxLabel", 2, Heading(120)},
    {"TcxLabel", 3, Heading(140)},
    {"TcxLabel", 4, Heading(180)},
    {"TcxLabel", 5, Cool(240, navy, 1)},
    {"TcxLabel", 6, Heading(360)},
    {"TcxLabel", 7, Cool(480, maroon, 2)},
    {"TcxButton", 0, {.place = Font}},
    {"TcxButton", -1, {.place = Font, .sizePercent = 100, .sizeLess = 1, .smoothsAgain = true}},
    {"TcxButtonEdit", 0, plain},
    {"TcxButtonEdit", 1, greyEdit},
    {"TcxTextEdit", 0, plain},
    {"TcxTextEdit", 1, greyEdit},
    {"TcxMemo", 0, plain},
    {"TcxMemo", 1, greyEdit},
    {"TcxDBMemo", 0, plain},
    {"TcxDBMemo", 1, greyEdit},
};

} // namespace

QByteArray FontKind(const QList<QByteArray> &classNames)
{
    const auto *kind = std::find_if(std::begin(kinds), std::end(kinds),
                                    [&](const Kind &row) { return classNames.contains(row.name); });
    return kind == std::end(kinds) ? QByteArray() : QByteArray(kind->name);
}

std::optional<FontRule> FindFontRule(const QByteArray &kind, int tag)
{
    const auto *row =
        std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind &one) { return kind == one.name; });
    if (row != std::end(kinds) && row->isForAnyTag)
        return row->rule;
    const auto *tagged = std::find_if(std::begin(taggedRules), std::end(taggedRules),
                                      [&](const TaggedRule &one) { return kind == one.kind && tag == one.tag; });
    return tagged == std::end(taggedRules) ? std::nullopt : std::optional(tagged->rule);
}
