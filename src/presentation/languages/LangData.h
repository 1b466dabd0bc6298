#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

/// One property of a component and its number in the language files.
struct TDKLang_PropEntry
{
    int iID = 0;             ///< unique within one controller
    bool bValidated = false; ///< working flag of the design-time update
    QString wsPropName;      ///< path within the component, such as "Properties.Items[0].Description"
    QString wsDefLangValue;  ///< value in the default language, captured from the live component
};

/// The properties of one component, sorted by name.
class TDKLang_PropEntries
{
public:
    using Items = std::vector<TDKLang_PropEntry>;

    /// Takes the entries in any order.
    void Assign(Items items);
    /// Puts an entry at its place. REQUIRES: no entry has its name.
    TDKLang_PropEntry &Add(TDKLang_PropEntry entry);
    /// The entry of a name, by bisection; null if there is none. Valid until the list changes.
    TDKLang_PropEntry *FindByName(const QString &name);
    void RemoveUnvalidated();

    bool IsEmpty() const { return m_items.empty(); }
    qsizetype Count() const { return qsizetype(m_items.size()); }
    Items::iterator begin() { return m_items.begin(); }
    Items::iterator end() { return m_items.end(); }
    Items::const_iterator begin() const { return m_items.begin(); }
    Items::const_iterator end() const { return m_items.end(); }

private:
    Items m_items;
};

struct TDKLang_CompEntry;
using TDKLang_CompEntries = std::vector<std::unique_ptr<TDKLang_CompEntry>>;

/// One node of the tree that mirrors a window's components. Owns what is below it; borrows the live component.
struct TDKLang_CompEntry
{
    std::unique_ptr<TDKLang_PropEntries> FPropEntries;      ///< null: no properties
    std::unique_ptr<TDKLang_CompEntries> FOwnedCompEntries; ///< null: owns nothing
    QString FName;                                          ///< as stored; empty once the entry is bound
    QPointer<QObject> FComponent;
    TDKLang_CompEntry *FOwner = nullptr; ///< null for the root

    /// The live component's name when bound, the stored one otherwise.
    QString Name() const;
    /// The names up the tree joined by ".", without the root's; empty for the root.
    QString NamePath() const;
    /// Adds an owned entry with a stored name and returns it.
    TDKLang_CompEntry &AddOwned(const QString &name);
    /// The highest number in use in this entry and below it, 0 if there is none.
    int HighestId() const;
};

/// Reads a table of the binary form "LangData". Takes memory of at most ten times the input (and 256 KiB more).
/// Throws EDKLangError for bytes that end early, go on after the root, nest too deep (more than 64), count more
/// than the bytes can hold, or are not UTF-8.
std::unique_ptr<TDKLang_CompEntry> LoadLangData(const QByteArray &bytes);

/// Writes a table in the same form; captured values are not stored.
/// Throws EDKLangError for a name of more than 65,535 bytes or a tree that is nested too deep to be read again.
QByteArray SaveLangData(const TDKLang_CompEntry &root);
