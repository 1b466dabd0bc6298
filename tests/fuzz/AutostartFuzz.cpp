#include "fuzz/Fuzz.h"

#include "stores/settings/AutostartEntry.h"

FUZZ_TARGET(Autostart)
{
    const AutostartEntry foreign = ReadAutostartFile(input);
    for (const AutostartEntry &entry : {foreign, AutostartEntry{QString::fromUtf8(input), input.size() % 2 == 0, {}}}) {
        const AutostartEntry again = ReadAutostartFile(AutostartFileOf(QStringLiteral("Kelora"), entry));
        REQUIRE(again.command == entry.command);
        REQUIRE(again.isExpandable == entry.isExpandable || entry.command.isEmpty());
    }
}
