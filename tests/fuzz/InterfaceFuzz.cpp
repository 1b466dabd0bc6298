#include "fuzz/ToolInput.h"

#include "lumivara-lang/NumberLedger.h"
#include "lumivara-lang/UiFile.h"

FUZZ_TARGET(Interface)
{
    const QString window = ScratchFileWith(QStringLiteral("Window.ui"), input);
    ReadOrRefuse(window, [&] {
        for (const UiComponent &component : ReadUiFile(window).components)
            REQUIRE(!component.name.isEmpty() && component.classChain.last() == "QObject");
    });
    ReadOrRefuse(window, [&] {
        const NumberLedger ledger = NumberLedger::Read(window);
        for (const QString &section : ledger.Sections()) {
            for (const int number : ledger.Numbers(section))
                REQUIRE(number >= 1 && number <= ledger.Highest(section));
        }
        ledger.Problems();
    });
}
