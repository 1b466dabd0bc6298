#include "fuzz/ToolInput.h"

#include "lumivara-lang/LanguageCheck.h"

FUZZ_TARGET(LanguageCheck)
{
    WindowTable window;
    window.section = QStringLiteral("frmSmall");
    window.texts = {{1, QStringLiteral("frmSmall.Caption"), QStringLiteral("Cửa sổ"), true},
                    {2, QStringLiteral("lbCount.Caption"), QStringLiteral("&Có %d trên %s"), true},
                    {3, QStringLiteral("lbNote.Caption"), QStringLiteral("\r\nGhi chú\r\n"), true}};
    const QStringList lines = LinesOf(input);
    for (const LanguageFinding &finding : CheckLanguage(lines, {window}))
        REQUIRE(finding.line >= 1 && finding.line <= lines.size() && !finding.text.isEmpty());
}
