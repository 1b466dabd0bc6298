#include "lumivara-data/marks/MarkReferences.h"

#include "base/VisibleText.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/TagReader.h"
#include "stores/data/FIBDataSet.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether a text node fills a block, for the browser: what has no width does.
bool HasText(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(),
                       [](QChar c) { return c != QChar::ByteOrderMark && (!c.isSpace() || c.unicode() == 0x85); });
}

/// The number behind an id's last colon.
QString SegmentOf(const std::vector<TagReader::Attribute> &attributes)
{
    static const QRegularExpression form(uR"(^(?:.*:)?(\d+(?:[.-]\d+)*)$)"_s);
    for (const TagReader::Attribute &attribute : attributes) {
        if (attribute.name.compare("id", Qt::CaseInsensitive) == 0)
            return form.match(QString::fromUtf8(WithoutEntities(attribute.value))).captured(1);
    }
    return {};
}

} // namespace

/// Counts blocks as the browser's own script does: what stands between gaps is one, a row of a table too, and a part
/// with an id of its own begins a new one.
class ReferencedPage::Reader
{
public:
    explicit Reader(ReferencedPage &page) : m_page(page) {}

    void Read(const QByteArray &html)
    {
        TagReader tags(html, TagReader::Manner::Browser);
        for (;;) {
            switch (tags.Next()) {
            case TagReader::Part::Text:
                TakeText(QString::fromUtf8(WithoutEntities(tags.Source())));
                break;
            case TagReader::Part::Open:
                Open(tags);
                break;
            case TagReader::Part::Close:
                Close(tags.Name());
                break;
            case TagReader::Part::Aside:
                break;
            case TagReader::Part::Broken:
            case TagReader::Part::End:
                return;
            }
        }
    }

private:
    void Open(TagReader &tags)
    {
        const QByteArray name = tags.Name();
        if (name == "table") {
            ++m_tables;
        } else if (name == "tr" && m_tables > 0 && (m_rowTables == 0 || m_rowTables == m_tables)) {
            // A row in a row is that of a table within.
            m_rowTables = m_tables;
            m_rowBlock = -1;
        }
        if (IsBlockElement(std::string_view(name.constData(), static_cast<size_t>(name.size()))))
            m_isAtGap = true;
        if (const QString segment = SegmentOf(tags.Attributes()); !segment.isEmpty()) {
            m_segment = segment;
            m_isAtGap = true;
        }
        if (IsUnreadElement(std::string_view(name.constData(), static_cast<size_t>(name.size()))))
            tags.TakeRawText();
    }

    void Close(const QByteArray &name)
    {
        if (IsBlockElement(std::string_view(name.constData(), static_cast<size_t>(name.size()))))
            m_isAtGap = true;
        if ((name == "tr" || name == "table") && m_rowTables == m_tables)
            m_rowTables = 0;
        if (name == "table")
            m_tables = std::max(m_tables - 1, 0);
    }

    void TakeText(const QString &text)
    {
        if (m_isAtGap) {
            if (!HasText(text))
                return;
            m_isAtGap = false;
            const bool isSameRow = m_rowTables > 0 && m_rowBlock >= 0;
            const int block = isSameRow ? m_rowBlock : m_blocks++;
            if (m_rowTables > 0)
                m_rowBlock = block;
            m_page.m_parts.append(
                {m_page.m_letters.size(), m_segment.isEmpty() ? QString::number(block + 1) : m_segment});
        }
        for (const QChar character : text) {
            if (IsVisibleLetter(character.unicode()))
                m_page.m_letters += character;
        }
    }

    ReferencedPage &m_page;
    bool m_isAtGap = true;
    int m_tables = 0;    ///< open ones
    int m_rowTables = 0; ///< that were open where the row began; 0 outside of rows
    int m_rowBlock = -1;
    int m_blocks = 0;
    QString m_segment;
};

ReferencedPage::ReferencedPage(const QByteArray &page)
{
    Reader(*this).Read(page);
}

QString ReferencedPage::PartWith(const QString &letters) const
{
    const qsizetype at = letters.isEmpty() ? -1 : m_letters.indexOf(letters);
    if (at < 0)
        return {};
    const auto next = std::ranges::upper_bound(m_parts, at, {}, &Part::begin);
    return next == m_parts.begin() ? QString() : std::prev(next)->name;
}

void MarkReferences::ReadPages(int text)
{
    m_text = text;
    m_pages.clear();
    TpFIBDataSet rows;
    rows.SetDatabase(&m_canon->Database());
    rows.SetTransaction(&m_canon->Transaction());
    rows.SelectSQL() =
        QStringList{u"select %1 from KELORA_CONTENT where ID_VIC = %2"_s.arg(PageColumns().join(u", "_s)).arg(text)};
    rows.Open();
    if (rows.IsEmpty())
        return;
    for (const QString &column : PageColumns())
        m_pages.append(ReferencedPage(rows.FieldByName(column).AsBytes()));
}

QString MarkReferences::Of(const Mark &mark)
{
    if (mark.collection != Collection::Kelora)
        return {};
    const QString number = QString::number(mark.text);
    if (!m_canon)
        return number;
    if (mark.text != m_text)
        ReadPages(mark.text);
    const QString words = ReferencedPage(mark.excerpt).Letters();
    for (const ReferencedPage &page : std::as_const(m_pages)) {
        if (const QString part = page.PartWith(words); !part.isEmpty())
            return number + u':' + part;
    }
    return number;
}
