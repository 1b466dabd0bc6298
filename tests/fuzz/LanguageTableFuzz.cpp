#include "fuzz/Fuzz.h"

#include "presentation/LangData.h"
#include "presentation/LangError.h"

FUZZ_TARGET(LanguageTable)
{
    try {
        const QByteArray written = SaveLangData(*LoadLangData(input));
        REQUIRE(SaveLangData(*LoadLangData(written)) == written);
    } catch (const EDKLangError &) {
    }
}
