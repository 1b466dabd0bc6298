#include "lumivara-data/canon/SegmentedComposer.h"

#include "base/Messages.h"
#include "lumivara-data/canon/ImportedPage.h"
#include "lumivara-data/canon/SegmentedHead.h"
#include "lumivara-data/canon/SegmentedPage.h"

using namespace Qt::StringLiterals;

namespace {

QString PlaceOf(const QString &file, int line)
{
    return line == 0 ? file : u"%1:%2"_s.arg(file).arg(line);
}

std::optional<std::vector<TextSegment>> Read(const SourceFolder &folder, const QString &file, Report &report)
{
    if (file.isEmpty())
        return std::nullopt;
    const std::optional<QByteArray> json = folder.ReadText(file, report);
    if (!json)
        return std::nullopt;
    try {
        return ParseSegments(*json);
    } catch (const SegmentFault &fault) {
        report.Find(PlaceOf(file, fault.Line()), fault.Fault() + Sentence({u"; không nhập", u"; not taken"}));
    }
    return std::nullopt;
}

std::vector<AlignedSegment> Align(const SourceFolder &folder, const SegmentedFiles &files, bool &hasMarkup,
                                  Report &report)
{
    Alignment alignment;
    const auto tell = [&](const QString &file, const std::vector<QByteArray> &repeated) {
        for (const QByteArray &id : repeated)
            report.Find(file,
                        Sentence({u"đoạn \"%1\" lặp lại; không nhập", u"the segment \"%1\" comes again; not taken"})
                            .arg(QString::fromUtf8(id)));
    };
    for (int column = 0; column < LanguageCount; ++column) {
        const QString &file = files.text[size_t(column)];
        std::vector<QByteArray> repeated;
        if (const auto segments = Read(folder, file, report))
            alignment.AddText(column, *segments, repeated);
        tell(file, repeated);
    }
    std::vector<QByteArray> repeated;
    const auto markup = Read(folder, files.markup, report);
    hasMarkup = markup && !markup->empty();
    if (markup)
        alignment.AddMarkup(*markup, repeated);
    tell(files.markup, repeated);
    return alignment.Take();
}

/// Escapes the words of a language; where they would make too large a page, they go.
void Escape(std::vector<AlignedSegment> &segments, int language, const QString &file, Report &report)
{
    qsizetype size = 0;
    for (const AlignedSegment &segment : segments)
        size += ImportedPage::EscapedSize(segment.text[language]);
    const bool isTooLarge = size > LargestPage;
    if (isTooLarge)
        report.Find(file, PageFault::TooLarge().Fault() + Sentence({u"; không nhập", u"; not taken"}));
    for (AlignedSegment &segment : segments)
        segment.text[language] = isTooLarge ? QByteArray() : ImportedPage::Escaped(segment.text[language]);
}

} // namespace

qsizetype SegmentedFiles::Bytes(const SourceFolder &folder) const
{
    qsizetype bytes = markup.isEmpty() ? 0 : folder.SizeOf(markup);
    for (const QString &file : text)
        bytes += file.isEmpty() ? 0 : folder.SizeOf(file);
    return bytes;
}

ComposedText ComposeSegmented(const SourceFolder &folder, const QString &id, const SegmentedFiles &files)
{
    ComposedText composed;
    bool hasMarkup = false;
    std::vector<AlignedSegment> segments;
    if (const qsizetype bytes = files.Bytes(folder); bytes > LargestSegmentedText) {
        composed.told.Find(id, Sentence({u"các tệp của bài có %1 byte, nhiều hơn %2; không nhập",
                                         u"its files have %1 bytes, more than %2; not taken"})
                                   .arg(bytes)
                                   .arg(LargestSegmentedText));
        return composed;
    }
    try {
        segments = Align(folder, files, hasMarkup, composed.told);
    } catch (const SegmentFault &fault) {
        composed.told.Find(id, fault.Fault() + Sentence({u"; không nhập", u"; not taken"}));
        return composed;
    }

    SegmentedHead head = HeadOf(segments);
    const std::array<QByteArray, LanguageCount> &titles = head.titles;
    LanguageNames names;
    for (size_t i = 0; i < LanguageCount; ++i)
        names[i] = FittingName(QString::fromUtf8(titles[i]), files.text[i], composed.told);
    composed.above = std::move(head.above);
    composed.number = head.number;
    for (int i = 0; i < LanguageCount; ++i)
        Escape(segments, i, files.text[size_t(i)], composed.told);
    const auto named = [&](Language language) {
        for (const Language other : {language, Language::Pali, Language::Vietnamese, Language::English}) {
            if (const QString &name = names[size_t(other)]; !name.isEmpty())
                return name;
        }
        return FittingName(id, id, composed.told);
    };
    const auto single = [&](Language language) {
        const QByteArray title =
            titles[size_t(language)].isEmpty() ? named(language).toUtf8() : titles[size_t(language)];
        try {
            return SegmentedPage::Single(segments, language, hasMarkup, head.title, title, composed.counts);
        } catch (const PageFault &fault) {
            composed.told.Find(files.text[size_t(language)],
                               fault.Fault() +
                                   Sentence({u" trong phần định dạng; không nhập", u" in its mark-up; not taken"}));
            return QByteArray();
        }
    };
    CanonText text;
    text.source = id;
    text.namePali = named(Language::Pali);
    text.nameVietnamese = named(Language::Vietnamese);
    if (const QString &english = names[size_t(Language::English)]; !english.isEmpty())
        text.nameEnglish = english;
    text.pages[0] = single(Language::Pali);
    text.pages[1] = single(Language::English);
    text.pages[2] = single(Language::Vietnamese);
    if (!text.pages[0].isNull()) {
        const Language other = text.pages[2].isNull() ? Language::English : Language::Vietnamese;
        text.pages[3] = SegmentedPage::Parallel(segments, other, (text.namePali + u" – "_s + named(other)).toUtf8());
    }
    if (text.pages[0].isNull() && text.pages[1].isNull() && text.pages[2].isNull())
        composed.told.Find(id,
                           Sentence({u"bài này không còn gì; không nhập", u"nothing is left of this text; not taken"}));
    else
        composed.text = std::move(text);
    return composed;
}
