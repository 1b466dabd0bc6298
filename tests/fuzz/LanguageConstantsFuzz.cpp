#include "fuzz/Fuzz.h"

#include "presentation/languages/LangConstants.h"
#include "presentation/languages/LangError.h"

FUZZ_TARGET(LanguageConstants)
{
    TDKLang_Constants first;
    first.Add(QStringLiteral("Kept"), QStringLiteral("stays after a failure"));
    try {
        first.LoadFromBytes(input);
    } catch (const EDKLangError &) {
        REQUIRE(first.Count() == 1 && first.Find(QStringLiteral("Kept")));
        return;
    }
    // A text of an older version may be longer in this one's units than they can count.
    try {
        const QByteArray written = first.SaveToBytes();
        TDKLang_Constants second;
        second.LoadFromBytes(written);
        REQUIRE(second.SaveToBytes() == written && second.Count() == first.Count());
    } catch (const EDKLangError &) {
    }
}
