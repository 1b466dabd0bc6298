#pragma once

#include "presentation/languages/LangConstants.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

/// One translated value.
struct TDKLang_PropValueTranslation
{
    int iID = 0;
    TranStates States; ///< empty after loading
    QString wsValue;   ///< unescaped; line breaks are CR LF
};

/// The values of one section of a language file, sorted by number.
class TDKLang_CompTranslation
{
public:
    using Items = std::vector<TDKLang_PropValueTranslation>;

    explicit TDKLang_CompTranslation(const QString &name) : FComponentName(name) {}
    QString FComponentName;

    /// Puts a value at its place. Throws EDKLangError if the number is taken.
    void Add(int id, const QString &value);
    /// The value of a number, by bisection; null if there is none. Valid until the list changes.
    const TDKLang_PropValueTranslation *Find(int id) const;
    qsizetype Count() const { return qsizetype(m_items.size()); }
    Items::const_iterator begin() const { return m_items.begin(); }
    Items::const_iterator end() const { return m_items.end(); }

private:
    friend class TranslationsReader;
    Items m_items;
};

/// One language: the contents of a .lng file.
class TDKLang_CompTranslations
{
public:
    struct Param
    {
        QString name, value;
    };

    QList<Param> FParams;         ///< the header's lines in their order, values raw
    TDKLang_Constants FConstants; ///< section "$CONSTANTS"
    bool FIsStreamUnicode = true; ///< the text read last had a byte order mark

    /// Replaces everything by a file's text, in UTF-16 or UTF-8 with a mark, UTF-8 without, or else windows-1252.
    /// `paramsOnly` stops at the first line that begins with "[". Takes at most ten times the input (and 4 MiB more).
    /// Throws EDKLangError with the line's index, from 0; what was read before stays then.
    void LoadFromBytes(const QByteArray &bytes, bool paramsOnly = false);
    /// The same from a file, which `paramsOnly` reads no further than needed and 16 MiB at most.
    /// Throws EDKLangError also if the file can't be read.
    void LoadFromFile(const QString &path, bool paramsOnly = false);
    /// UTF-16 little-endian with mark, lines ended by CR LF.
    QByteArray SaveToBytes() const;

    /// The value of the first header line of that name, ignoring case; a null string if there is none.
    QString ParamValue(const QString &name) const;
    /// The parameter LANGID; 0 if it is missing, no decimal number or beyond 16 bits.
    quint16 LangId() const;
    /// The section of a name, ignoring case; null if there is none. Owned by this object.
    const TDKLang_CompTranslation *FindSection(const QString &name) const;
    /// The section of a name, made if there is none.
    TDKLang_CompTranslation &Section(const QString &name);
    const std::vector<std::unique_ptr<TDKLang_CompTranslation>> &Sections() const { return m_sections; }

private:
    friend class TranslationsReader;
    std::vector<std::unique_ptr<TDKLang_CompTranslation>> m_sections;
};

/// A value as written in a language file: backslash doubled, each line break one "\n", other control characters as a
/// backslash and two digits.
QString EncodeLangValue(const QString &value);
/// The value of a text in a language file. A backslash that begins no escape stays.
QString DecodeLangValue(QStringView text);
