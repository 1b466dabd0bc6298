#include "stores/settings/Options.h"

#include "stores/settings/Registry.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString AppPath;
QString FontName;
QString LastWord;
int DictionaryKind = 0;
bool MultiDictionary = false;
int GlobalActiveStyle = 0;
QString GlobalActiveName;
int CollectionMode = 0;

namespace {

constexpr Colour SystemWindowColour = 0xFF000005;
constexpr Colour Yellow = 0x0000FFFF;
constexpr bool InDialog = true;

/// Reads the value of a row as the type of its default.
struct Reader
{
    const TRegistry &registry;
    const QString &name;

    OptionValue operator()(int) const { return registry.ReadInteger(name); }
    OptionValue operator()(bool) const { return registry.ReadBool(name); }
    OptionValue operator()(Colour) const { return static_cast<Colour>(registry.ReadInteger(name)); }
    OptionValue operator()(const QString &) const { return registry.ReadString(name); }
};

struct Writer
{
    TRegistry &registry;
    const QString &name;

    void operator()(int value) const { registry.WriteInteger(name, value); }
    void operator()(bool value) const { registry.WriteBool(name, value); }
    void operator()(Colour value) const { registry.WriteInteger(name, static_cast<int>(value)); }
    void operator()(const QString &value) const { registry.WriteString(name, value); }
};

OptionValue ReadOption(const TRegistry &registry, const OptionRow &row)
{
    return std::visit(Reader{registry, row.name}, row.byDefault);
}

} // namespace

std::span<const OptionRow> OptionRows()
{
    using enum Option;
    using enum OptionGroup;
    static const OptionRow rows[]{
        {OpenSutta, u"OpenSutta"_s, Start, 1, InDialog},
        {LastKelora, u"LastKelora"_s, Start, 1},
        {PopupActive, u"PopupActive"_s, Start, true, InDialog},
        {PopupTime, u"PopupTime"_s, Start, 30, InDialog},
        {InterfaceLang, u"InterfaceLang"_s, Start, 0},
        {FontName, u"FontName"_s, Start, u"Segoe UI"_s, InDialog},
        {BgColor, u"BgColor"_s, Start, SystemWindowColour, InDialog},
        {SeachHighlightColor, u"SeachHighlightColor"_s, Start, Yellow, InDialog},
        {LastWord, u"LastWord"_s, Start, QString()},
        {LanguageSutta, u"LanguageSutta"_s, Start, 1},
        {MarginWidth, u"MarginWidth"_s, WrittenOnly, 0},
        {Dictionary, u"Dictionary"_s, WrittenOnly, 1},
        {GlobalActiveStyle, u"GlobalActiveStyle"_s, Style, 25, !InDialog, 16},
        {GlobalActiveName, u"GlobalActiveName"_s, Style, u"Office2010Blue"_s, !InDialog, u"Office2007Blue"_s},
        {ReferenceForm, u"ReferenceForm"_s, Ours, u"({collection}, {name} {reference}, {language})"_s},
        {FootBar, u"FootBar"_s, Ours, true},
        {PaliTyping, u"PaliTyping"_s, Ours, false},
        {FollowDesktop, u"FollowDesktop"_s, Ours, false},
        {DarkLook, u"DarkLook"_s, Ours, QString()},
        {LightLook, u"LightLook"_s, Ours, QString()},
    };
    return rows;
}

const OptionRow &RowOf(Option option)
{
    return *std::ranges::find(OptionRows(), option, &OptionRow::option);
}

OptionValues DefaultsOf(OptionGroup group, std::span<const OptionRow> rows)
{
    OptionValues values;
    for (const OptionRow &row : rows)
        if (row.group == group)
            values.emplace(row.option, row.byDefault);
    return values;
}

std::optional<OptionValues> ReadTogether(const TRegistry &registry, OptionGroup group, std::span<const OptionRow> rows)
{
    OptionValues values;
    try {
        for (const OptionRow &row : rows)
            if (row.group == group)
                values.emplace(row.option, ReadOption(registry, row));
    } catch (const std::exception &) {
        return std::nullopt;
    }
    return values;
}

OptionValues ReadOurs(const TRegistry &registry, std::span<const OptionRow> rows)
{
    OptionValues values = DefaultsOf(OptionGroup::Ours, rows);
    for (const OptionRow &row : rows) {
        try {
            // A missing text would read as an empty one.
            if (row.group == OptionGroup::Ours && registry.GetDataType(row.name) != RegistryType::Unknown)
                values[row.option] = ReadOption(registry, row);
        } catch (const std::exception &) {
            // Of another type: the default stays.
        }
    }
    return values;
}

void WriteOption(TRegistry &registry, const OptionRow &row, const OptionValue &value)
{
    Q_ASSERT(value.index() == row.byDefault.index());
    std::visit(Writer{registry, row.name}, value);
}

OptionValues ReadDialogOptions(TRegistry &registry)
{
    OptionValues stored;
    registry.RootKey = RegistryRoot::CurrentUser;
    // For reading only, so that options in a store that can't be written are shown.
    if (!registry.OpenKeyReadOnly(QString::fromUtf16(OptionsKey)))
        return stored;
    try {
        for (const OptionRow &row : OptionRows())
            if (row.isInDialog)
                stored.emplace(row.option, ReadOption(registry, row));
    } catch (const std::exception &) {
        // The rest keeps what it shows.
    }
    registry.CloseKey();
    return stored;
}

void WriteDialogOptions(TRegistry &registry, const std::function<OptionValue(const OptionRow &)> &valueOf)
{
    registry.RootKey = RegistryRoot::CurrentUser;
    if (!registry.OpenKey(QString::fromUtf16(OptionsKey), true))
        return;
    for (const OptionRow &row : OptionRows())
        if (row.isInDialog)
            WriteOption(registry, row, valueOf(row));
    registry.CloseKey();
}
