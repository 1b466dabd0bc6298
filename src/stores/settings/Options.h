#pragma once

#include "base/Colour.h"

#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <variant>

class TRegistry;

/// The settings: as they hold in the running program, save those that are the canon module's own; and the table of what
/// is stored, the only place that names it.

extern QString AppPath;       ///< folder of the executable with its trailing separator
extern QString FontName;      ///< font of the page
extern QString LastWord;      ///< word last shown by the dictionary
extern int DictionaryKind;    ///< 1 to 8 one directed dictionary, 0 none yet
extern bool MultiDictionary;  ///< show the partner dictionary's content too
extern int GlobalActiveStyle; ///< 1-based index of the skin, 0 for none
extern QString GlobalActiveName;
extern int CollectionMode; ///< 1: the Kelora's settings key

/// The options keys of this program and of its sibling under the current user; the machine's start list, and this
/// program's value in it.
inline constexpr char16_t OptionsKey[] = u"\\Software\\Melko\\Kelora\\Options\\";
/// Where the reader was in each text, which is no option.
inline constexpr char16_t PlacesKey[] = u"\\Software\\Melko\\Kelora\\Places\\";
inline constexpr char16_t TaruneOptionsKey[] = u"\\Software\\Melko\\Tarune\\Options\\";
inline constexpr char16_t RunKey[] = u"\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
inline constexpr char16_t RunValue[] = u"Kelora";

/// The values of the options key.
enum class Option {
    OpenSutta, ///< opening text: 1 last, 2 random, 3 none
    LastKelora,
    PopupActive,
    PopupTime,
    InterfaceLang,
    FontName,
    BgColor,
    SeachHighlightColor,
    LastWord,
    LanguageSutta,
    MarginWidth,
    Dictionary,
    GlobalActiveStyle,
    GlobalActiveName,
    ReferenceForm, ///< what a copied passage bears behind it, with places for its parts in braces
    FootBar,       ///< the bar at the foot of the main window shows
    PaliTyping,    ///< Velthuis letters become Pāli ones while they are typed
    FollowDesktop, ///< the desktop's wish for dark or light windows picks the skin
    DarkLook,      ///< name of the skin chosen last while the desktop was dark; empty for none yet
    LightLook,     ///< the same while it was light
};

/// An option's value; the alternative is its type. A boolean is stored as 0 or 1, a colour as the integer of its bits.
using OptionValue = std::variant<int, bool, Colour, QString>;
/// Some or all options.
using OptionValues = std::map<Option, OptionValue>;

/// When an option is read, and what happens where it is missing or of another type.
enum class OptionGroup {
    Start,       ///< at the start, all or none: a single bad one puts the whole group back to the defaults
    Style,       ///< the same, before the first skin is chosen
    WrittenOnly, ///< never read; the default holds where Start falls back to its own
    Ours,        ///< at the start, each by itself: options added since never reset those that a reader has
};

/// A row of the table. Rows of a group, and those of the dialog, are read and written in the table's order.
struct OptionRow
{
    Option option;
    QString name; ///< in the store, misspellings included
    OptionGroup group;
    OptionValue byDefault; ///< also tells the type
    bool isInDialog = false;
    /// What is stored where a style can't be. Differs from the default on purpose: stored choices of users rest on
    /// both.
    std::optional<OptionValue> writeFallback = std::nullopt;
};

/// The table.
std::span<const OptionRow> OptionRows();
const OptionRow &RowOf(Option option);

/// An option's value; it must be among `values` and of that type.
template <typename Value>
const Value &Get(const OptionValues &values, Option option)
{
    return std::get<Value>(values.at(option));
}

/// The defaults of a group.
OptionValues DefaultsOf(OptionGroup group, std::span<const OptionRow> rows = OptionRows());
/// The stored values of a group from the open key; none if one is missing or of another type. A missing text is empty.
std::optional<OptionValues> ReadTogether(const TRegistry &registry, OptionGroup group,
                                         std::span<const OptionRow> rows = OptionRows());
/// The group Ours from the open key, each value with its own default where it is missing or of another type, or where
/// no key is open.
OptionValues ReadOurs(const TRegistry &registry, std::span<const OptionRow> rows = OptionRows());
/// Writes one value into the open key. Throws RegistryError.
void WriteOption(TRegistry &registry, const OptionRow &row, const OptionValue &value);

/// What of the options dialog is stored, up to the first value that is missing or of another type; nothing without the
/// key. Never fails.
OptionValues ReadDialogOptions(TRegistry &registry);
/// Writes the dialog's options one by one, making the key if need be; a key that can't be opened stores nothing and is
/// no failure. Throws RegistryError when a value can't be stored; those before it are. `valueOf` is asked for each
/// value when its turn has come, and what it throws passes through.
void WriteDialogOptions(TRegistry &registry, const std::function<OptionValue(const OptionRow &)> &valueOf);
