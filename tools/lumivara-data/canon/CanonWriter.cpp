#include "lumivara-data/canon/CanonWriter.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "stores/Schema.h"
#include "stores/engine/Statement.h"

using namespace Qt::StringLiterals;

namespace {

QVariant OrNull(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant OrNull(const QByteArray &bytes)
{
    return bytes.isNull() ? QVariant() : QVariant(bytes);
}

} // namespace

CanonWriter::CanonWriter(const QString &target)
    : m_target(target), m_file(std::in_place, target), m_path(m_file->Path())
{}

std::unique_ptr<CanonWriter> CanonWriter::Aside(const QString &path)
{
    std::unique_ptr<CanonWriter> writer(new CanonWriter);
    writer->m_path = path;
    return writer;
}

CanonWriter::~CanonWriter() = default;

void CanonWriter::Open()
{
    if (m_texts)
        return;
    constexpr int pageSize = 16384;
    m_data.Create(m_path, pageSize, false);
    m_data.RunSchema(u"canon"_s);
    m_groups.emplace(m_data, Table::KeloraTree, GroupColumns());
    m_texts.emplace(m_data, Table::KeloraContent, TextColumns());
}

void CanonWriter::Add(const CanonGroup &group)
{
    Open();
    m_groups->Append(
        {group.idVit, group.parent, OrNull(group.nameVietnamese), OrNull(group.namePali), OrNull(group.nameEnglish)});
    m_rows.groups.append({group.idVit, group.parent, group.nameVietnamese, group.namePali, group.nameEnglish});
}

void CanonWriter::Add(const CanonText &text, bool isFinished)
{
    Open();
    QList<QVariant> values{text.idVit,
                           text.idVic,
                           text.number ? QVariant(*text.number) : QVariant(),
                           OrNull(text.nameVietnamese),
                           OrNull(text.namePali),
                           OrNull(text.nameEnglish)};
    CheckedText row{text.idVit, text.idVic, text.number, text.nameVietnamese, text.namePali, text.nameEnglish, {}};
    for (int i = 0; i < CanonText::Pages; ++i) {
        const QByteArray &page = text.pages[i];
        values.append(OrNull(page));
        m_pageCount += page.isEmpty() ? 0 : 1;
        m_englishCount += !page.isEmpty() && PageColumns()[i] == QString(Field::ContentVicEng) ? 1 : 0;
        if (isFinished && !page.isEmpty())
            row.pages.append({PageColumns()[i], InspectPage(page)});
    }
    m_texts->Append(values);
    m_rows.texts.append(row);
    m_sources.append(KeptSource(text.source));
}

void CanonWriter::Change(std::unique_ptr<Statement> &change, const QString &sql, const QList<QVariant> &values)
{
    if (!change)
        change = std::make_unique<Statement>(m_data.Database().Attachment(), m_data.Transaction().Native(), sql);
    change->Execute(m_data.Transaction().Native(), values);
}

void CanonWriter::Rename(qsizetype text, const LanguageNames &names)
{
    CheckedText &row = m_rows.texts[text];
    row.namePali = names[size_t(Language::Pali)];
    row.nameVietnamese = names[size_t(Language::Vietnamese)];
    row.nameEnglish = names[size_t(Language::English)];
    Change(m_rename,
           u"update KELORA_CONTENT set NAME_VIC_PAL = :PALI, NAME_VIC_VIE = :VIE, NAME_VIC_ENG = :ENG "
           "where ID_VIT = :GROUP_KEY and ID_VIC = :ID"_s,
           {OrNull(row.namePali), OrNull(row.nameVietnamese), OrNull(row.nameEnglish), *row.idVit, *row.idVic});
}

void CanonWriter::Rekey(qsizetype text, int key)
{
    CheckedText &row = m_rows.texts[text];
    Change(m_rekey, u"update KELORA_CONTENT set ID_VIC = :KEY where ID_VIT = :GROUP_KEY and ID_VIC = :ID"_s,
           {key, *row.idVit, *row.idVic});
    row.idVic = key;
}

QList<TextTraits> CanonWriter::Traits() const
{
    QList<TextTraits> traits;
    for (qsizetype at = 0; at < m_rows.texts.size(); ++at) {
        const CheckedText &text = m_rows.texts[at];
        traits.append({*text.idVic, m_sources[at], {text.namePali, text.nameVietnamese, text.nameEnglish}});
    }
    return traits;
}

void CanonWriter::WriteSources()
{
    RowWriter sources(m_data, Table::KeloraSource, SourceColumns());
    for (const QList<TextTraits> &texts : {Traits(), m_gone}) {
        for (const TextTraits &text : texts) {
            if (!text.source.isEmpty())
                sources.Append({text.key, text.source});
        }
    }
}

void CanonWriter::Close()
{
    Open();
    WriteSources();
    m_groups.reset();
    m_texts.reset();
    m_rename.reset();
    m_rekey.reset();
    m_data.Finish(true);
}

void CanonWriter::Finish(Report &report, const QString &stage)
{
    Close();
    for (const Finding &finding : CheckCanon(m_rows))
        report.Find(finding.row, finding.fault);
    report.Count(Sentence({u"nhóm", u"groups"}), m_rows.groups.size());
    report.Count(Sentence({u"bài", u"texts"}), m_rows.texts.size());
    report.Count(Sentence({u"trang văn bản", u"pages"}), m_pageCount);
    TellEnglish(m_englishCount, report);
    if (stage.isEmpty())
        m_file->Finish();
    else
        m_file->FinishAs(stage, m_target);
}

QString FittingName(const QString &name, const QString &place, Report &report)
{
    QString fitting = name;
    fitting.removeIf([](QChar c) { return c.category() == QChar::Other_Control && !c.isSpace(); });
    fitting = fitting.simplified();
    if (fitting.size() <= Length::Name)
        return fitting;
    report.Note(place, Sentence({u"tên \"%1…\" bị cắt còn %2 ký tự", u"the name \"%1…\" is cut to %2 characters"})
                           .arg(fitting.left(40))
                           .arg(Length::Name));
    return fitting.left(fitting[Length::Name - 1].isHighSurrogate() ? Length::Name - 1 : Length::Name).trimmed();
}

void TellEnglish(qsizetype pages, Report &report)
{
    if (pages > 0) {
        report.Note(
            Sentence({u"Tiếng Anh", u"English"}),
            Sentence(
                {u"%1 trang được lưu và xuất ra; chương trình chỉ hiện tiếng Anh bên cạnh tiếng Pāli, trong trang song "
                 u"ngữ",
                 u"%1 pages are stored and exported; the program shows English only beside Pāli, in parallel pages"})
                .arg(pages));
    }
}
