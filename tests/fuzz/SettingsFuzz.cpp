#include "fuzz/Fuzz.h"

#include "stores/settings/SettingsFile.h"

FUZZ_TARGET(Settings)
{
    const auto [place, bytes] = FuzzedPair(input);
    std::optional<SettingsFile> settings = SettingsFile::Parse(bytes);
    if (!settings)
        return;
    const QByteArray before = settings->ToBytes();
    const std::optional<SettingsFile> again = SettingsFile::Parse(before);
    REQUIRE(again && again->ToBytes() == before);

    const QString path = SettingsFile::NormalPath(QString::fromUtf8(place)), name = QStringLiteral("LastWord");
    SettingsValue value;
    value.type = RegistryType::String;
    value.text = QString::fromUtf8(place);
    settings->SetValue(path, name, value);
    const std::optional<SettingsFile> changed = SettingsFile::Parse(settings->ToBytes());
    REQUIRE(changed && changed->HasKey(path) && changed->Value(path, name)->text == value.text);
}
