#include "lumivara-data/canon/CanonFolderWriter.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonRows.h"
#include "lumivara-data/canon/CanonTable.h"
#include "lumivara-data/canon/ExportFolder.h"
#include "lumivara-data/files/HtmlText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char16_t *PageNames[CanonText::Pages] = {u"pali", u"english", u"vietnamese", u"parallel"};

/// One text as JSON objects: a segment for the title and one for each block of a page.
class SegmentFiles
{
public:
    SegmentFiles(const CanonText &text, const QString &groups) : m_text(text), m_groups(groups) {}

    void WriteTo(ExportFolder &folder)
    {
        const std::pair<QString, QString> languages[] = {
            {u"root/pli/%1/%2_root-pli.json"_s, m_text.namePali},
            {u"translation/en/lumivara/%1/%2_translation-en-lumivara.json"_s, m_text.nameEnglish},
            {u"translation/vi/lumivara/%1/%2_translation-vi-lumivara.json"_s, m_text.nameVietnamese}};
        qsizetype blocks = 0;
        for (int i = 0; i < 3; ++i) {
            if (m_text.pages[i].isEmpty())
                continue;
            const QStringList lines = Blocks(m_text.pages[i]);
            blocks = qMax(blocks, lines.size());
            folder.Write(languages[i].first.arg(m_groups, Id()), Object(languages[i].second, lines));
        }
        if (blocks > 0)
            folder.Write(u"html/%1/%2_html.json"_s.arg(m_groups, Id()),
                         Object(u"<h1>{}</h1>"_s, QStringList(blocks, u"<p>{}</p>"_s)));
    }

private:
    QString Id() const { return u"text%1"_s.arg(m_text.idVic); }

    static QStringList Blocks(const QByteArray &page)
    {
        const qsizetype body = page.toLower().indexOf("<body");
        QStringList lines;
        for (const QString &line : TextOfHtml(QString::fromUtf8(page.mid(qMax<qsizetype>(body, 0)))).split(u'\n')) {
            if (const QString words = line.simplified(); !words.isEmpty())
                lines.append(words);
        }
        return lines;
    }

    static QByteArray Quoted(const QString &text)
    {
        QByteArray quoted = "\"";
        for (const char c : text.toUtf8()) {
            if (c == '"' || c == '\\')
                quoted += '\\';
            if (uchar(c) < ' ')
                quoted += "\\u00" + QByteArray::number(uchar(c), 16).rightJustified(2, '0');
            else
                quoted += c;
        }
        return quoted + '"';
    }

    QByteArray Object(const QString &title, const QStringList &blocks) const
    {
        QByteArray json = "{\n  " + Quoted(Id() + u":0.1"_s) + ": " + Quoted(title);
        for (qsizetype i = 0; i < blocks.size(); ++i)
            json += ",\n  " + Quoted(u"%1:%2.1"_s.arg(Id()).arg(i + 1)) + ": " + Quoted(blocks[i]);
        return json + "\n}\n";
    }

    const CanonText &m_text;
    QString m_groups;
};

/// The folders of each group: its own and those above, by their keys and names.
QHash<int, QString> GroupFolders(const QList<CanonGroup> &groups)
{
    QHash<int, const CanonGroup *> known;
    for (const CanonGroup &group : groups)
        known.insert(group.idVit, &group);
    QHash<int, QString> folders;
    for (const CanonGroup &group : groups) {
        QStringList parts;
        constexpr int deepest = 30; // also the end of a cycle
        for (const CanonGroup *at = &group; at && parts.size() < deepest; at = known.value(at->parent)) {
            QString name = at->namePali.left(40);
            name.removeIf([](QChar c) { return c == u'/' || c.unicode() < u' '; });
            parts.prepend((u"%1 "_s.arg(at->idVit) + name).trimmed());
        }
        folders.insert(group.idVit, parts.join(u'/'));
    }
    return folders;
}

} // namespace

void WriteCanonFolder(CanonRows &rows, ExportFolder &folder, bool withSegments, Report &report, Console &console)
{
    QByteArray table = CanonTable::Header();
    const QList<CanonGroup> groups = rows.Groups(report);
    for (const CanonGroup &group : groups)
        table += CanonTable::Line({true,
                                   true,
                                   {},
                                   group.idVit,
                                   group.parent,
                                   {},
                                   group.namePali,
                                   group.nameVietnamese,
                                   group.nameEnglish,
                                   {}});
    const QHash<int, QString> folders = withSegments ? GroupFolders(groups) : QHash<int, QString>();
    const qsizetype total = rows.TextCount();
    qsizetype texts = 0, pages = 0;
    for (CanonText text; rows.Next(text, report);) {
        CanonTableRow row{false,
                          true,
                          {},
                          text.idVic,
                          text.idVit,
                          text.number,
                          text.namePali,
                          text.nameVietnamese,
                          text.nameEnglish,
                          {},
                          text.source};
        for (int i = 0; i < CanonText::Pages; ++i) {
            if (text.pages[i].isEmpty()) {
                row.pages[i] = text.pages[i].isNull() ? QString() : u""_s;
                continue;
            }
            row.pages[i] =
                u"pages/%1-%2-%3.html"_s.arg(text.idVit).arg(text.idVic).arg(QString::fromUtf16(PageNames[i]));
            folder.Write(row.pages[i], text.pages[i]);
            ++pages;
        }
        table += CanonTable::Line(row);
        if (withSegments)
            SegmentFiles(text, folders.value(text.idVit, u"0"_s)).WriteTo(folder);
        console.Progress(u"texts"_s, ++texts, total);
    }
    console.EndProgress();
    folder.Write(QString::fromUtf16(CanonTable::FileName), table);
    report.Count(u"groups"_s, groups.size());
    report.Count(u"texts"_s, texts);
    report.Count(u"pages"_s, pages);
}
