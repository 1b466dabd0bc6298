#include "everywhere/EverywhereScan.h"

#include "everywhere/EverywhereRows.h"
#include "everywhere/HitFinder.h"
#include "everywhere/HitWords.h"
#include "stores/Schema.h"
#include "stores/engine/DatabaseError.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace {

/// Of a page, in bytes: folding so many takes a millisecond or two.
constexpr qsizetype SourcePiece = 256 * 1024;

/// Something with a text: a name, a page, or a field of a mark.
struct Source
{
    EverywhereKind kind = EverywhereKind::Page;
    int place = 0; ///< of its text or mark
    int language = 0;
    EverywhereField field = EverywhereField::None;

    bool operator==(const Source &) const = default;

    Markup HasMarkup() const
    {
        return kind == EverywhereKind::Page || field == EverywhereField::Excerpt ? Markup::Html : Markup::None;
    }
};

/// Hits in one source.
struct Run
{
    Source source;
    FoundHits hits;
    std::shared_ptr<const std::vector<FoldedPlace>> places;

    qsizetype Count() const { return std::ssize(hits.begins); }
};

struct FoundText
{
    EverywhereText text;
    std::vector<Run> runs;
};

/// Folded pages, as many as fit.
class KeptPages
{
public:
    explicit KeptPages(qint64 most) : m_most(most) {}

    struct Page
    {
        FoldedText text;
        bool isThere = false; ///< something is stored
    };

    const Page *Find(const Source &source) const
    {
        const auto found = m_pages.constFind({source.place, source.language});
        return found == m_pages.constEnd() ? nullptr : &*found;
    }
    void Keep(const Source &source, const Page &page)
    {
        constexpr qint64 overhead = 128;
        const qint64 size = page.text.bytes.size() + overhead +
                            std::ssize(*page.text.places) * static_cast<qint64>(sizeof(FoldedPlace));
        if (m_bytes + size > m_most)
            return;
        m_bytes += size;
        m_pages.insert({source.place, source.language}, page);
    }
    void Clear()
    {
        m_pages.clear();
        m_bytes = 0;
    }
    qint64 Bytes() const { return m_bytes; }

private:
    QHash<std::pair<int, int>, Page> m_pages;
    qint64 m_most;
    qint64 m_bytes = 0;
};

} // namespace

/// A scan goes from source to source: those of a text, or of a mark, are a unit, which counts if every part of the
/// query is in it; the units of one text are collected and enter the result together.
struct EverywhereScan::State
{
    State(EverywhereScan &owner, TpFIBDatabase &canonDatabase, TpFIBDatabase *marksDatabase, qint64 mostKept)
        : scan(owner), canon(canonDatabase), marks(marksDatabase), kept(mostKept)
    {}

    enum class Phase { Done, ListTexts, Texts, ListMarks, Marks };

    bool Work();
    bool WorkOnUnits(int count);
    void WorkOnSource();
    bool Prepare(const Source &source);
    void NoteOwnPage(const Source &source, bool isThere)
    {
        hasOwnPage |= isThere && (source.language == PageMode::Pali || source.language == PageMode::Vietnamese);
    }
    void LeaveSource();
    void BeginUnit(int place);
    void EndUnit();
    void EndText();
    void Drop();
    void Reset();
    std::vector<Source> SourcesOf(int place) const;
    bool IsLeftOut(const Source &source);
    void BytesInto(const Source &source, QByteArray &bytes);
    const QByteArray &Bytes();
    quint32 AllParts() const { return (1U << query.Parts().size()) - 1; }

    EverywhereScan &scan;
    EverywhereCanon canon;
    EverywhereMarks marks;
    KeptPages kept;
    EverywhereQuery query;
    Phase phase = Phase::Done;
    int place = 0; ///< of the text or the mark

    // The unit
    std::vector<Source> sources;
    std::size_t at = 0;
    quint32 partsThere = 0;
    bool hasOwnPage = false; ///< in Pāli or Vietnamese
    std::vector<Run> runs;

    // The source
    QByteArray bytes;
    std::optional<Source> bytesOf;
    QByteArray foldedBytes; ///< memory to fold in
    std::optional<TextFolder> folder;
    FoldedText text;
    std::optional<HitFinder> finder;

    // The result
    std::vector<Run> pending; ///< of the text whose units are being searched
    std::vector<FoundText> found;
    int nearCount = 0;
    qint64 hitCount = 0;
    int textsDone = 0;
    int failures = 0;

    // What Hit() has read last
    QByteArray shownBytes;
    std::optional<Source> shownOf;
};

void EverywhereScan::State::Reset()
{
    Drop();
    phase = Phase::Done;
    place = 0;
    sources.clear();
    at = 0;
    runs.clear();
    pending.clear();
    found.clear();
    nearCount = 0;
    hitCount = 0;
    textsDone = 0;
    failures = 0;
    bytesOf.reset(); // marks change
    shownOf.reset();
    marks.Close();
}

/// A piece of work that takes a few milliseconds at most; false if nothing is left.
bool EverywhereScan::State::Work()
{
    const EverywhereSwitches &switches = query.Switches();
    switch (phase) {
    case Phase::ListTexts:
        if (!canon.ReadSome()) {
            const bool hasTexts = switches.pali || switches.vietnamese || switches.english || switches.names;
            phase = hasTexts ? Phase::Texts : Phase::ListMarks;
        }
        return true;
    case Phase::Texts:
        if (!WorkOnUnits(canon.Count()))
            phase = Phase::ListMarks;
        return true;
    case Phase::ListMarks:
        if (!switches.marks)
            phase = Phase::Done;
        else if (!marks.ReadSome(canon))
            phase = Phase::Marks;
        return phase != Phase::Done;
    case Phase::Marks:
        if (!WorkOnUnits(marks.Count()))
            phase = Phase::Done;
        return phase != Phase::Done;
    default:
        return false;
    }
}

/// False after the last of so many texts or marks, with `place` at the first again.
bool EverywhereScan::State::WorkOnUnits(int count)
{
    if (place == count) {
        place = 0;
        return false;
    }
    if (sources.empty()) {
        BeginUnit(place);
    } else if (at < sources.size()) {
        WorkOnSource();
    } else {
        EndUnit();
        sources.clear();
        ++textsDone;
        ++place;
        if (phase == Phase::Texts || place == count || !marks.IsOfSameText(place - 1, place))
            EndText();
    }
    return true;
}

void EverywhereScan::State::BeginUnit(int unit)
{
    sources = SourcesOf(unit);
    at = 0;
    partsThere = 0;
    hasOwnPage = false;
    runs.clear();
}

std::vector<Source> EverywhereScan::State::SourcesOf(int unit) const
{
    std::vector<Source> list;
    if (phase == Phase::Marks) {
        for (const EverywhereField field :
             {EverywhereField::Title, EverywhereField::Keywords, EverywhereField::Note, EverywhereField::Excerpt})
            list.push_back({.kind = EverywhereKind::Mark, .place = unit, .field = field});
        return list;
    }
    const EverywhereSwitches &switches = query.Switches();
    const auto add = [&](EverywhereKind kind, int language) {
        list.push_back({.kind = kind, .place = unit, .language = language});
    };
    if (switches.names) {
        for (const int language : {PageMode::Pali, PageMode::Vietnamese, PageMode::English})
            add(EverywhereKind::Name, language);
    }
    if (switches.pali)
        add(EverywhereKind::Page, PageMode::Pali);
    if (switches.vietnamese)
        add(EverywhereKind::Page, PageMode::Vietnamese);
    if (switches.english)
        add(EverywhereKind::Page, PageMode::English);
    if (switches.pali || switches.vietnamese)
        add(EverywhereKind::Page, PageMode::Parallel);
    return list;
}

/// True for a parallel page beside one of the pages that it repeats.
bool EverywhereScan::State::IsLeftOut(const Source &source)
{
    if (source.kind != EverywhereKind::Page || source.language != PageMode::Parallel)
        return false;
    const auto isStored = [&](int language) {
        bytesOf.reset();
        canon.PageInto(source.place, language, bytes);
        return !bytes.isEmpty();
    };
    return hasOwnPage || (!query.Switches().pali && isStored(PageMode::Pali)) ||
           (!query.Switches().vietnamese && isStored(PageMode::Vietnamese));
}

void EverywhereScan::State::WorkOnSource()
{
    try {
        if (!finder && !Prepare(sources[at]))
            return;
        if (finder && finder->Find())
            return;
        if (finder)
            LeaveSource();
    } catch (const DatabaseError &) {
        ++failures;
    }
    Drop();
    ++at;
}

/// Folds the source, or goes on with it; true when that is done. Without a finder then if the source is left out.
bool EverywhereScan::State::Prepare(const Source &source)
{
    if (source.kind == EverywhereKind::Page) {
        if (!folder && IsLeftOut(source))
            return true;
        if (const KeptPages::Page *page = folder ? nullptr : kept.Find(source)) {
            text = page->text;
            NoteOwnPage(source, page->isThere);
        } else {
            if (!folder)
                folder.emplace(Bytes(), source.HasMarkup(), foldedBytes);
            if (folder->Fold(SourcePiece))
                return false;
            text = folder->Folded();
            folder.reset();
            kept.Keep(source, {text, !bytes.isEmpty()});
            NoteOwnPage(source, !bytes.isEmpty());
        }
    } else {
        text = Folded(Bytes(), source.HasMarkup());
    }
    finder.emplace(query, text, source.HasMarkup(), [this] { return QByteArrayView(Bytes()); });
    return true;
}

void EverywhereScan::State::LeaveSource()
{
    FoundHits &hits = finder->Found();
    partsThere |= hits.partsThere;
    if (hits.begins.empty())
        return;
    hits.begins.shrink_to_fit();
    hits.parts.shrink_to_fit();
    runs.push_back({sources[at], std::move(hits), text.places});
}

void EverywhereScan::State::Drop()
{
    folder.reset();
    finder.reset();
    text = {};
}

void EverywhereScan::State::EndUnit()
{
    if (partsThere == AllParts())
        std::move(runs.begin(), runs.end(), std::back_inserter(pending));
    runs.clear();
}

/// Lets the text before `place` enter the result.
void EverywhereScan::State::EndText()
{
    if (pending.empty())
        return;
    FoundText entry{phase == Phase::Marks ? marks.Describe(place - 1, canon) : canon.Describe(place - 1),
                    std::exchange(pending, {})};
    for (const Run &run : entry.runs) {
        if (const qsizetype first = run.hits.FirstNear(); !entry.text.isNear && first < run.Count()) {
            entry.text.isNear = true;
            entry.text.nearest = entry.text.hitCount + static_cast<int>(first);
        }
        entry.text.hitCount += static_cast<int>(run.Count());
    }
    const int index = entry.text.isNear ? nearCount : static_cast<int>(found.size());
    if (scan.BeforeText)
        scan.BeforeText(index);
    nearCount += entry.text.isNear ? 1 : 0;
    hitCount += entry.text.hitCount;
    found.insert(found.begin() + index, std::move(entry));
    if (scan.AfterText)
        scan.AfterText(index);
}

void EverywhereScan::State::BytesInto(const Source &source, QByteArray &into)
{
    switch (source.kind) {
    case EverywhereKind::Page:
        return canon.PageInto(source.place, source.language, into);
    case EverywhereKind::Name:
        into = canon.Name(source.place, source.language).toUtf8();
        return;
    case EverywhereKind::Mark:
        return marks.FieldInto(source.place, source.field, into);
    }
}

/// What is stored of the source that is being searched.
const QByteArray &EverywhereScan::State::Bytes()
{
    const Source &source = sources[at];
    if (bytesOf != source) {
        bytesOf.reset();
        BytesInto(source, bytes);
        bytesOf = source;
    }
    return bytes;
}

EverywhereScan::EverywhereScan(TpFIBDatabase &canon, TpFIBDatabase *marks, qint64 mostKept)
    : m_state(std::make_unique<State>(*this, canon, marks, mostKept))
{}

EverywhereScan::~EverywhereScan() = default;

void EverywhereScan::Begin(const EverywhereQuery &query)
{
    m_state->Reset();
    m_state->query = query;
    if (!query.IsEmpty())
        m_state->phase = State::Phase::ListTexts;
}

bool EverywhereScan::Step(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    try {
        do {
            if (!m_state->Work())
                return false;
        } while (std::chrono::steady_clock::now() < end);
    } catch (...) {
        Stop();
        throw;
    }
    return true;
}

void EverywhereScan::Stop()
{
    m_state->Drop();
    m_state->phase = State::Phase::Done;
}

bool EverywhereScan::IsRunning() const
{
    return m_state->phase != State::Phase::Done;
}

void EverywhereScan::ForgetPages()
{
    m_state->Reset();
    m_state->kept.Clear();
    m_state->canon.Close();
}

const EverywhereQuery &EverywhereScan::Query() const
{
    return m_state->query;
}

int EverywhereScan::TextCount() const
{
    return static_cast<int>(m_state->found.size());
}

const EverywhereText &EverywhereScan::Text(int text) const
{
    return m_state->found[static_cast<std::size_t>(text)].text;
}

qint64 EverywhereScan::HitCount() const
{
    return m_state->hitCount;
}

EverywhereHit EverywhereScan::Hit(int text, int hit)
{
    State &state = *m_state;
    const std::vector<Run> &runs = state.found[static_cast<std::size_t>(text)].runs;
    auto run = runs.begin();
    qsizetype number = hit;
    for (; number >= run->Count(); ++run)
        number -= run->Count();

    const Source &source = run->source;
    EverywhereHit result;
    result.kind = source.kind;
    result.language = source.language;
    result.field = source.field;
    if (source.kind == EverywhereKind::Mark)
        result.idFoc = state.marks.IdFoc(source.place);
    result.number = static_cast<int>(number);
    result.count = static_cast<int>(run->Count());
    result.isNear = run->hits.IsNear(number);
    // Lines of one page are asked for together.
    if (state.shownOf != source) {
        state.shownOf.reset();
        state.BytesInto(source, state.shownBytes);
        state.shownOf = source;
    }
    SetWords(result, state.shownBytes, source.HasMarkup(), *run->places,
             run->hits.begins[static_cast<std::size_t>(number)],
             state.query.Parts()[run->hits.PartOf(number)].folded.size());
    return result;
}

int EverywhereScan::TextsDone() const
{
    return m_state->textsDone;
}

int EverywhereScan::TextsInAll() const
{
    State &state = *m_state;
    const bool hasTexts = state.phase != State::Phase::ListTexts;
    return (hasTexts ? state.canon.Count() : state.canon.CountSoFar()) + state.marks.CountSoFar();
}

int EverywhereScan::Failures() const
{
    return m_state->failures;
}

qint64 EverywhereScan::KeptBytes() const
{
    return m_state->kept.Bytes();
}
