#include "presentation/languages/LangData.h"

#include "presentation/languages/LangBytes.h"

#include <QSet>

#include <algorithm>

namespace {

constexpr int maxDepth = 64;
constexpr int leastPropertyBytes = 6;  // number, length of the name
constexpr int leastComponentBytes = 4; // length of the name, two flags

class TableReader
{
public:
    explicit TableReader(const QByteArray &bytes)
        : m_reader(bytes, QStringLiteral("language table")), m_budget(bytes.size() * 9 + 256 * 1024)
    {}

    std::unique_ptr<TDKLang_CompEntry> Root()
    {
        auto root = std::make_unique<TDKLang_CompEntry>();
        Read(*root, 1);
        m_reader.ExpectEnd();
        return root;
    }

private:
    void Read(TDKLang_CompEntry &entry, int depth)
    {
        if (depth > maxDepth)
            m_reader.Fail(QStringLiteral("it is nested too deep"));
        entry.FName = m_reader.Utf8String();
        SpendText(entry.FName);
        if (m_reader.Boolean())
            entry.FPropEntries = Properties();
        if (!m_reader.Boolean())
            return;
        const int count = m_reader.Count(leastComponentBytes);
        Spend(count, qsizetype(sizeof(TDKLang_CompEntry) + 3 * sizeof(void *)));
        entry.FOwnedCompEntries = std::make_unique<TDKLang_CompEntries>();
        entry.FOwnedCompEntries->reserve(count);
        for (int i = 0; i < count; ++i) {
            auto &owned = entry.FOwnedCompEntries->emplace_back(std::make_unique<TDKLang_CompEntry>());
            owned->FOwner = &entry;
            Read(*owned, depth + 1);
        }
    }

    std::unique_ptr<TDKLang_PropEntries> Properties()
    {
        const int count = m_reader.Count(leastPropertyBytes);
        Spend(count, sizeof(TDKLang_PropEntry));
        Spend(1, 64);
        TDKLang_PropEntries::Items items(count);
        for (auto &item : items) {
            item.iID = m_reader.Integer();
            item.wsPropName = Shared(m_reader.Utf8String());
        }
        auto entries = std::make_unique<TDKLang_PropEntries>();
        entries->Assign(std::move(items));
        return entries;
    }

    // A window's table says "Caption" a hundred times.
    QString Shared(const QString &name)
    {
        const auto known = m_names.constFind(name);
        if (known != m_names.cend())
            return *known;
        SpendText(name);
        if (m_names.size() < 256)
            m_names.insert(name);
        return name;
    }

    // Many short entries take far more memory than bytes. No real window has such a table, so it is rejected.
    void Spend(qsizetype count, qsizetype each)
    {
        m_budget -= count * each;
        if (m_budget < 0)
            m_reader.Fail(QStringLiteral("it has too many entries for its size"));
    }
    void SpendText(const QString &text) { Spend(1, text.isEmpty() ? 0 : 48 + 2 * text.size()); }

    LangByteReader m_reader;
    qsizetype m_budget;
    QSet<QString> m_names;
};

void Write(LangByteWriter &writer, const TDKLang_CompEntry &entry, int depth)
{
    if (depth > maxDepth)
        throw EDKLangError(QStringLiteral("The language table is nested too deep"));
    writer.Utf8String(entry.Name());
    writer.Boolean(entry.FPropEntries != nullptr);
    if (entry.FPropEntries) {
        writer.Integer(qint32(entry.FPropEntries->Count()));
        for (const auto &property : *entry.FPropEntries) {
            writer.Integer(property.iID);
            writer.Utf8String(property.wsPropName);
        }
    }
    writer.Boolean(entry.FOwnedCompEntries != nullptr);
    if (entry.FOwnedCompEntries) {
        writer.Integer(qint32(entry.FOwnedCompEntries->size()));
        for (const auto &owned : *entry.FOwnedCompEntries)
            Write(writer, *owned, depth + 1);
    }
}

bool NameBefore(const TDKLang_PropEntry &a, const TDKLang_PropEntry &b)
{
    return a.wsPropName < b.wsPropName;
}

} // namespace

void TDKLang_PropEntries::Assign(Items items)
{
    m_items = std::move(items);
    // A stored table is sorted already; stable_sort would still allocate memory.
    if (!std::is_sorted(m_items.begin(), m_items.end(), NameBefore))
        std::sort(m_items.begin(), m_items.end(), NameBefore);
}

TDKLang_PropEntry &TDKLang_PropEntries::Add(TDKLang_PropEntry entry)
{
    const auto place = std::lower_bound(m_items.begin(), m_items.end(), entry, NameBefore);
    return *m_items.insert(place, std::move(entry));
}

TDKLang_PropEntry *TDKLang_PropEntries::FindByName(const QString &name)
{
    const auto found =
        std::lower_bound(m_items.begin(), m_items.end(), name,
                         [](const TDKLang_PropEntry &entry, const QString &n) { return entry.wsPropName < n; });
    return found != m_items.end() && found->wsPropName == name ? &*found : nullptr;
}

void TDKLang_PropEntries::RemoveUnvalidated()
{
    std::erase_if(m_items, [](const TDKLang_PropEntry &entry) { return !entry.bValidated; });
}

QString TDKLang_CompEntry::Name() const
{
    return FComponent ? FComponent->objectName() : FName;
}

QString TDKLang_CompEntry::NamePath() const
{
    QString path;
    for (const auto *entry = this; entry->FOwner; entry = entry->FOwner)
        path = path.isEmpty() ? entry->Name() : entry->Name() + u'.' + path;
    return path;
}

TDKLang_CompEntry &TDKLang_CompEntry::AddOwned(const QString &name)
{
    if (!FOwnedCompEntries)
        FOwnedCompEntries = std::make_unique<TDKLang_CompEntries>();
    auto &owned = *FOwnedCompEntries->emplace_back(std::make_unique<TDKLang_CompEntry>());
    owned.FName = name;
    owned.FOwner = this;
    return owned;
}

int TDKLang_CompEntry::HighestId() const
{
    int highest = 0;
    if (FPropEntries)
        for (const auto &property : *FPropEntries)
            highest = std::max(highest, property.iID);
    if (FOwnedCompEntries)
        for (const auto &owned : *FOwnedCompEntries)
            highest = std::max(highest, owned->HighestId());
    return highest;
}

std::unique_ptr<TDKLang_CompEntry> LoadLangData(const QByteArray &bytes)
{
    return TableReader(bytes).Root();
}

QByteArray SaveLangData(const TDKLang_CompEntry &root)
{
    LangByteWriter writer;
    Write(writer, root, 1);
    return writer.Bytes();
}
