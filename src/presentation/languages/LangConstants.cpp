#include "presentation/languages/LangConstants.h"

#include "presentation/languages/LangBytes.h"

#include <algorithm>

namespace {

constexpr int currentVersion = 3;

bool IsIdentifier(const QString &name)
{
    if (name.isEmpty() || name.front().isDigit())
        return false;
    return std::all_of(name.cbegin(), name.cend(), [](QChar c) { return c == u'_' || c.isLetterOrNumber(); });
}

} // namespace

TDKLang_Constant &TDKLang_Constants::Add(const QString &name, const QString &value)
{
    if (!IsIdentifier(name))
        throw EDKLangError(QStringLiteral("Invalid constant name (\"%1\")").arg(name));
    if (m_items.contains(name))
        throw EDKLangError(QStringLiteral("Duplicate constant name (\"%1\")").arg(name));
    return *m_items.insert(name, {name, value, value, {}});
}

const TDKLang_Constant *TDKLang_Constants::Find(const QString &name) const
{
    const auto found = m_items.constFind(name);
    return found != m_items.cend() ? &*found : nullptr;
}

void TDKLang_Constants::Translate(const TDKLang_Constants *translations)
{
    for (auto &constant : m_items) {
        if (!translations)
            constant.wsValue = constant.wsDefValue;
        else if (const auto *translated = translations->Find(constant.wsName))
            constant.wsValue = translated->wsValue;
    }
}

void TDKLang_Constants::LoadFromBytes(const QByteArray &bytes)
{
    LangByteReader reader(bytes, QStringLiteral("stream of constants"));
    const int version = reader.Byte();
    if (version > currentVersion)
        throw EDKLangError(QStringLiteral("Stream version (%1) is greater than the current one (%2)")
                               .arg(version)
                               .arg(currentVersion));
    TDKLang_Constants read;
    // The first two versions had no separate flag.
    read.FAutoSaveLangSource = version < 2 ? version == 1 : reader.Boolean();
    const int count = reader.Count(4);
    for (int i = 0; i < count; ++i) {
        const QString name = version < 3 ? reader.Utf8String() : reader.WideString();
        const QString value = version < 2 ? reader.Utf8String() : reader.WideString();
        read.Add(name, value);
    }
    reader.ExpectEnd();
    *this = std::move(read);
}

QByteArray TDKLang_Constants::SaveToBytes() const
{
    LangByteWriter writer;
    writer.Byte(currentVersion);
    writer.Boolean(FAutoSaveLangSource);
    writer.Integer(qint32(m_items.size()));
    for (const auto &constant : m_items) {
        writer.WideString(constant.wsName);
        writer.WideString(constant.wsDefValue);
    }
    return writer.Bytes();
}
