#include "fuzz/Fuzz.h"

#include "presentation/languages/LangError.h"
#include "presentation/languages/LangText.h"
#include "presentation/languages/Translations.h"

#include <QBuffer>

namespace {

void ReadAndWriteAgain(const QByteArray &bytes, bool paramsOnly)
{
    TDKLang_CompTranslations first;
    try {
        first.LoadFromBytes(bytes, paramsOnly);
    } catch (const EDKLangError &) {
        return;
    }
    // What is written is read back without a loss.
    const QByteArray written = first.SaveToBytes();
    TDKLang_CompTranslations second;
    second.LoadFromBytes(written);
    REQUIRE(second.SaveToBytes() == written && second.Sections().size() == first.Sections().size() &&
            second.LangId() == first.LangId());
}

} // namespace

FUZZ_TARGET(LanguageFile)
{
    ReadAndWriteAgain(input, false);
    ReadAndWriteAgain(input, true);

    const QString text = DecodeLangText(input);
    REQUIRE(DecodeLangText(EncodeLangText(text)) == text);

    QBuffer device;
    device.setData(input);
    device.open(QIODevice::ReadOnly);
    REQUIRE(input.startsWith(ReadLangHeader(device)));
}
