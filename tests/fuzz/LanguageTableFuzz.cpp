#include "fuzz/Fuzz.h"

#include "presentation/languages/LangData.h"
#include "presentation/languages/LangError.h"

FUZZ_TARGET(LanguageTable)
{
    try {
        const QByteArray written = SaveLangData(*LoadLangData(input));
        REQUIRE(SaveLangData(*LoadLangData(written)) == written);
    } catch (const EDKLangError &) {
    }
}
