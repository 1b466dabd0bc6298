#pragma once

#include <QByteArray>
#include <QFlags>
#include <QMap>
#include <QString>

enum TranState { dktsUntranslated = 1, dktsAutotranslated = 2 };
Q_DECLARE_FLAGS(TranStates, TranState)
Q_DECLARE_OPERATORS_FOR_FLAGS(TranStates)

/// A text used in code, by name.
struct TDKLang_Constant
{
    QString wsName;
    QString wsValue;    ///< current
    QString wsDefValue; ///< in the default language
    TranStates States;
};

/// Constants by name; case counts.
class TDKLang_Constants
{
public:
    bool FAutoSaveLangSource = true;

    /// Adds a constant with its value as the default one.
    /// Throws EDKLangError if the name is no identifier (letter or "_", then letters, digits, "_") or is taken.
    TDKLang_Constant &Add(const QString &name, const QString &value);
    /// Null if there is none. Valid until the constant is removed.
    const TDKLang_Constant *Find(const QString &name) const;
    /// With null each constant takes its default value; otherwise those that `translations` has take that value.
    void Translate(const TDKLang_Constants *translations);
    void Clear() { m_items.clear(); }
    qsizetype Count() const { return m_items.size(); }
    const QMap<QString, TDKLang_Constant> &Items() const { return m_items; }

    /// Replaces all by the constants of a stream of version 0 to 3; they stay as they were if it throws.
    /// Throws EDKLangError for a higher version, damaged bytes, and what Add refuses.
    void LoadFromBytes(const QByteArray &bytes);
    /// The stream of the current version, 3. Throws EDKLangError for a text of more than 65,535 UTF-16 units.
    QByteArray SaveToBytes() const;

private:
    QMap<QString, TDKLang_Constant> m_items;
};
