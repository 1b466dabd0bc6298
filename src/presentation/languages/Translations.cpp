#include "presentation/languages/Translations.h"

#include "presentation/languages/LangError.h"
#include "presentation/languages/LangText.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <numeric>

namespace {

const QLatin1StringView constantsName("$CONSTANTS");

QString DuplicateText(int id)
{
    return QStringLiteral("Duplicate property value translation ID (%1)").arg(id);
}

[[noreturn]] void FailAtLine(qsizetype line, const QString &reason)
{
    throw EDKLangError(QStringLiteral("Loading translations failed.\r\nLine %1: %2").arg(line).arg(reason));
}

bool IdBefore(const TDKLang_PropValueTranslation &value, int id)
{
    return value.iID < id;
}

} // namespace

/// Reads one text into an empty set of translations.
class TranslationsReader
{
public:
    TranslationsReader(TDKLang_CompTranslations &target, qsizetype byteCount)
        : m_target(target), m_budget(byteCount * 7 + 4 * 1024 * 1024)
    {}

    void Read(QStringView text, bool paramsOnly)
    {
        for (qsizetype start = 0; start < text.size(); ++m_line) {
            qsizetype end = start;
            while (end < text.size() && text[end] != u'\n' && text[end] != u'\r')
                ++end;
            const QStringView line = text.sliced(start, end - start).trimmed();
            start = text.sliced(end).startsWith(u"\r\n") ? end + 2 : end + 1;
            if (line.isEmpty() || line.front() == u';')
                continue;
            if (line.front() != u'[') {
                ReadValue(line);
                continue;
            }
            if (paramsOnly)
                break;
            if (line.size() > 2 && line.back() == u']')
                OpenSection(line.sliced(1, line.size() - 2).trimmed().toString());
        }
        SortSections();
    }

private:
    struct SectionLines
    {
        TDKLang_CompTranslation *section = nullptr;
        std::vector<quint32> lines; // of the values, in their order in the file
    };

    void OpenSection(const QString &name)
    {
        m_inHeader = false;
        m_section = -1;
        if (name.compare(constantsName, Qt::CaseInsensitive) == 0)
            return;
        const QString folded = name.toCaseFolded();
        const auto known = m_sectionOf.constFind(folded);
        if (known != m_sectionOf.cend()) {
            m_section = *known;
            return;
        }
        Spend(200 + 2 * TextBytes(name.size()));
        m_section = qsizetype(m_sections.size());
        m_sectionOf.insert(folded, m_section);
        auto &made = m_target.m_sections.emplace_back(std::make_unique<TDKLang_CompTranslation>(name));
        m_sections.push_back({made.get(), {}});
    }

    void ReadValue(QStringView line)
    {
        const qsizetype split = line.indexOf(u'=');
        const QStringView name = line.first(std::max<qsizetype>(split, 0)).trimmed();
        if (name.isEmpty())
            return;
        const QStringView raw = line.sliced(split + 1).trimmed();
        if (m_inHeader) {
            Spend(110 + TextBytes(name.size()) + TextBytes(raw.size()));
            m_target.FParams.append({name.toString(), raw.toString()});
        } else if (m_section < 0) {
            AddConstant(name.toString(), DecodeLangValue(raw));
        } else if (const int id = name.toInt(); id > 0) {
            Spend(96 + TextBytes(raw.size()));
            auto &[section, lines] = m_sections[m_section];
            Grow(section->m_items);
            section->m_items.push_back({id, {}, DecodeLangValue(raw)});
            lines.push_back(quint32(m_line));
        }
    }

    void AddConstant(const QString &name, const QString &value)
    {
        Spend(160 + TextBytes(name.size()) + TextBytes(value.size()));
        try {
            m_target.FConstants.Add(name, value);
        } catch (const EDKLangError &error) {
            Fail(error.Text());
        }
    }

    // Very many short lines take far more memory than bytes. No real language looks like that, so the text is rejected.
    void Spend(qsizetype bytes)
    {
        m_budget -= bytes;
        if (m_budget < 0)
            Fail(QStringLiteral("The file has too many entries for its size"));
    }

    // What a string takes on the heap, its header and the allocator's included.
    static qsizetype TextBytes(qsizetype units) { return units > 0 ? (2 * units + 41) & ~qsizetype(15) : 0; }

    // Grows by half: doubling would briefly take three times the memory.
    static void Grow(TDKLang_CompTranslation::Items &items)
    {
        if (items.size() == items.capacity())
            items.reserve(items.size() + items.size() / 2 + 8);
    }

    // Names the earliest faulty line: an earlier one may repeat a number.
    [[noreturn]] void Fail(const QString &reason)
    {
        SortSections();
        FailAtLine(m_line, reason);
    }

    // Sorts once at the end, so that an unsorted file costs no more than a sorted one.
    void SortSections()
    {
        qint64 doubledLine = -1;
        int doubledId = 0;
        for (auto &[section, lines] : m_sections) {
            auto &items = section->m_items;
            const auto notAbove = [](const auto &a, const auto &b) { return a.iID >= b.iID; };
            if (std::adjacent_find(items.begin(), items.end(), notAbove) == items.end())
                continue;
            std::vector<quint32> order(items.size());
            std::iota(order.begin(), order.end(), 0);
            std::sort(order.begin(), order.end(), [&items](quint32 a, quint32 b) {
                return items[a].iID != items[b].iID ? items[a].iID < items[b].iID : a < b;
            });
            for (size_t i = 1; i < order.size(); ++i) {
                const bool doubled = items[order[i]].iID == items[order[i - 1]].iID;
                if (doubled && (doubledLine < 0 || lines[order[i]] < doubledLine)) {
                    doubledLine = lines[order[i]];
                    doubledId = items[order[i]].iID;
                }
            }
            Permute(items, order);
        }
        if (doubledLine >= 0)
            FailAtLine(doubledLine, DuplicateText(doubledId));
    }

    // In place, cycle by cycle, because a copy would double the memory.
    static void Permute(TDKLang_CompTranslation::Items &items, std::vector<quint32> &order)
    {
        for (quint32 first = 0; first < order.size(); ++first) {
            quint32 at = first;
            for (quint32 from = order[at]; from != first; from = order[at]) {
                std::swap(items[at], items[from]);
                order[at] = at;
                at = from;
            }
            order[at] = at;
        }
    }

    TDKLang_CompTranslations &m_target;
    qsizetype m_budget;
    qsizetype m_line = 0;
    bool m_inHeader = true;
    qsizetype m_section = -1; // none: the constants, once the header is over
    std::vector<SectionLines> m_sections;
    QHash<QString, qsizetype> m_sectionOf;
};

void TDKLang_CompTranslation::Add(int id, const QString &value)
{
    const auto place = std::lower_bound(m_items.begin(), m_items.end(), id, IdBefore);
    if (place != m_items.end() && place->iID == id)
        throw EDKLangError(DuplicateText(id));
    m_items.insert(place, {id, {}, value});
}

const TDKLang_PropValueTranslation *TDKLang_CompTranslation::Find(int id) const
{
    const auto found = std::lower_bound(m_items.begin(), m_items.end(), id, IdBefore);
    return found != m_items.end() && found->iID == id ? &*found : nullptr;
}

void TDKLang_CompTranslations::LoadFromBytes(const QByteArray &bytes, bool paramsOnly)
{
    TDKLang_CompTranslations read;
    const QString text = DecodeLangText(bytes, &read.FIsStreamUnicode);
    TranslationsReader(read, bytes.size()).Read(text, paramsOnly);
    *this = std::move(read);
}

void TDKLang_CompTranslations::LoadFromFile(const QString &path, bool paramsOnly)
{
    QFile file(path);
    const auto fail = [&file, &path] {
        throw EDKLangError(QStringLiteral("Cannot open file \"%1\". %2").arg(path, file.errorString()));
    };
    if (!file.open(QIODevice::ReadOnly))
        fail();
    const QByteArray bytes = paramsOnly ? ReadLangHeader(file) : file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail();
    LoadFromBytes(bytes, paramsOnly);
}

QByteArray TDKLang_CompTranslations::SaveToBytes() const
{
    QString text;
    const auto line = [&text](const QString &content) { text += content + QLatin1StringView("\r\n"); };
    for (const Param &param : FParams)
        line(param.name + u'=' + param.value);
    if (!FParams.isEmpty())
        line({});
    for (const auto &section : m_sections) {
        // Two brackets alone open no section; with a blank between they open the one without a name.
        line(u'[' + (section->FComponentName.isEmpty() ? QStringLiteral(" ") : section->FComponentName) + u']');
        for (const auto &value : *section)
            line(QStringLiteral("%1=").arg(value.iID, 8, 10, QLatin1Char('0')) + EncodeLangValue(value.wsValue));
        line({});
    }
    line(u'[' + constantsName + u']');
    for (const auto &constant : FConstants.Items())
        line(constant.wsName + u'=' + EncodeLangValue(constant.wsValue));
    return EncodeLangText(text);
}

QString TDKLang_CompTranslations::ParamValue(const QString &name) const
{
    const auto found = std::find_if(FParams.cbegin(), FParams.cend(), [&name](const Param &param) {
        return param.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found != FParams.cend() ? found->value : QString();
}

quint16 TDKLang_CompTranslations::LangId() const
{
    return ParamValue(QStringLiteral("LANGID")).toUShort();
}

const TDKLang_CompTranslation *TDKLang_CompTranslations::FindSection(const QString &name) const
{
    const auto found = std::find_if(m_sections.cbegin(), m_sections.cend(), [&name](const auto &section) {
        return section->FComponentName.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found != m_sections.cend() ? found->get() : nullptr;
}

TDKLang_CompTranslation &TDKLang_CompTranslations::Section(const QString &name)
{
    // The section is ours; FindSection is const for those who only read.
    if (const auto *known = FindSection(name))
        return const_cast<TDKLang_CompTranslation &>(*known);
    return *m_sections.emplace_back(std::make_unique<TDKLang_CompTranslation>(name));
}

QString EncodeLangValue(const QString &value)
{
    QString text;
    text.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar unit = value[i];
        if (unit == u'\r' || unit == u'\n') {
            text += QLatin1StringView("\\n");
            const QChar partner = unit == u'\r' ? u'\n' : u'\r';
            if (i + 1 < value.size() && value[i + 1] == partner)
                ++i;
        } else if (unit == u'\\') {
            text += QLatin1StringView("\\\\");
        } else if (unit < u' ') {
            text += QStringLiteral("\\%1").arg(unit.unicode(), 2, 10, QLatin1Char('0'));
        } else {
            text += unit;
        }
    }
    return text;
}

QString DecodeLangValue(QStringView text)
{
    const auto digit = [text](qsizetype at) {
        return at < text.size() && text[at] >= u'0' && text[at] <= u'9' ? text[at].unicode() - u'0' : -1;
    };
    if (!text.contains(u'\\'))
        return text.toString();
    QString value;
    value.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar next = text[i] == u'\\' && i + 1 < text.size() ? text[i + 1] : QChar();
        if (next == u'n') {
            value += QLatin1StringView("\r\n");
        } else if (next == u't') {
            value += u'\t';
        } else if (next == u'\\') {
            value += u'\\';
        } else if (digit(i + 1) >= 0 && digit(i + 2) >= 0 && text[i] == u'\\') {
            value += QChar(digit(i + 1) * 10 + digit(i + 2));
            ++i;
        } else {
            value += text[i];
            continue;
        }
        ++i;
    }
    return value;
}
