#include "presentation/OptionValues.h"

#include "base/Colour.h"
#include "stores/KeloraDM.h"
#include "stores/settings/Options.h"

using namespace Qt::StringLiterals;

StoredOptions ReadStoredOptions(TRegistry &registry)
{
    StoredOptions stored;
    registry.RootKey = RegistryRoot::CurrentUser;
    // Read-only, so that options in a store that can't be written can be shown.
    if (!registry.OpenKeyReadOnly(QString::fromUtf16(OptionsKey)))
        return stored;
    try {
        stored.openSutta = registry.ReadInteger(u"OpenSutta"_s);
        stored.popupActive = registry.ReadBool(u"PopupActive"_s);
        stored.popupTime = registry.ReadInteger(u"PopupTime"_s);
        stored.fontName = registry.ReadString(u"FontName"_s);
        stored.bgColor = Colour(registry.ReadInteger(u"BgColor"_s));
        stored.seachHighlightColor = Colour(registry.ReadInteger(u"SeachHighlightColor"_s));
    } catch (const std::exception &) {
        // The rest keeps its values.
    }
    registry.CloseKey();
    return stored;
}

void WriteOptions(TRegistry &registry, const OptionValues &values, const std::function<QString()> &fontName)
{
    registry.RootKey = RegistryRoot::CurrentUser;
    if (!registry.OpenKey(QString::fromUtf16(OptionsKey), true))
        return;
    registry.WriteInteger(u"OpenSutta"_s, values.openSutta);
    registry.WriteBool(u"PopupActive"_s, values.popupActive);
    registry.WriteInteger(u"PopupTime"_s, values.popupTime);
    registry.WriteString(u"FontName"_s, fontName());
    registry.WriteInteger(u"BgColor"_s, int(values.bgColor));
    registry.WriteInteger(u"SeachHighlightColor"_s, int(values.seachHighlightColor));
    registry.CloseKey();
}
