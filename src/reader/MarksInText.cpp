#include "reader/MarksInText.h"

#include "base/Messages.h"
#include "marks/Excerpt.h"
#include "stores/ClientsDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/MarkStrip.h"
#include "toolkit/program/Guard.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr Message hitHint{u"Chỗ gặp của tìm kiếm", u"Found by the search"};

constexpr int longestPiece = 6;             // milliseconds
constexpr qsizetype lettersAtOnce = 20'000; // looked through for excerpts between two looks at the clock
constexpr qsizetype placesAtOnce = 2000;    // asked of the page, which gives what a piece of work allows
constexpr QStringView marksOfText = u"from SUTTA_TEXT_FOCUS F inner join SUTTA_LIST S on S.NIK_SUT = F.NIK_SUT and "
                                    "S.NIC_SUT = F.NIC_SUT where F.NIK_SUT = %1 and F.NIC_SUT = %2";

std::unique_ptr<TpFIBDataSet> OpenMarks(const QString &columns, int text, const QString &order = {})
{
    auto rows = std::make_unique<TpFIBDataSet>();
    rows->SetDatabase(&frmClientsDM->dbClientTarune);
    rows->SetTransaction(&frmClientsDM->trClientTarune);
    rows->SelectSQL() =
        QStringList{u"select "_s + columns, marksOfText.toString().arg(Collection::Kelora).arg(text), order};
    rows->Open();
    return rows;
}

StripKind KindOf(int priority)
{
    switch (priority) {
    case Priority::Special:
        return StripKind::Special;
    case Priority::High:
        return StripKind::High;
    case Priority::Low:
        return StripKind::Low;
    default:
        return StripKind::Normal;
    }
}

QList<double> Numbers(const QVariant &list)
{
    QList<double> numbers;
    for (const QVariant &number : list.toList())
        numbers.append(number.toDouble());
    return numbers;
}

} // namespace

MarksInText::MarksInText(TBrowserControl &page, TMarkStrip &strip) : m_page(page), m_strip(strip)
{
    m_strip.OnClick = [this](qsizetype line) { GoTo(line); };
    m_strip.OnDoubleClick = [this](qsizetype line) { OpenMark(line); };
}

MarksInText::~MarksInText()
{
    m_strip.OnClick = nullptr;
    m_strip.OnDoubleClick = nullptr;
}

void MarksInText::OpenText(int text)
{
    m_text = text;
    m_marks.clear();
    m_excerpts.clear();
    m_places.clear();
    m_heights.clear();
    m_targets.clear();
    m_strip.SetLines({});
    MarksChanged();
}

void MarksInText::MarksChanged()
{
    CountMarks();
    BeginReading();
    if (OnCount)
        OnCount();
    AdvanceLater();
}

void MarksInText::CountMarks()
{
    m_count = 0;
    if (m_text == 0 || !frmClientsDM || !frmClientsDM->vIsOKClients)
        return;
    // What cannot be read is told where marks are listed.
    try {
        m_count = OpenMarks(u"count(*) MARKS"_s, m_text)->FieldByName(u"MARKS"_s).AsInteger();
    } catch (const std::exception &) {
    }
}

void MarksInText::BeginReading()
{
    m_rows.reset();
    m_row = 0;
    m_reading.clear();
    m_excerptsRead.clear();
    m_finder.reset();
    if (m_count > 0) {
        try {
            m_rows = OpenMarks(u"F.ID_FOC, F.PRIORITY_FOC, F.NAME_FOC, F.DESC_FOC, F.TEXT_FOC"_s, m_text,
                               u"order by F.ID_FOC"_s);
            return;
        } catch (const std::exception &) {
        }
    }
    m_marks.clear();
    m_excerpts.clear();
    m_isFindingDue = true;
}

void MarksInText::PageLeft()
{
    ++m_turn;
    m_isWaiting = false;
    m_isPageHere = false;
    m_written = {};
    m_hasText = false;
    m_finder.reset();
    m_isFindingDue = true;
    m_isAskingHeights = false;
    AdvanceLater(); // the marks can be read meanwhile
}

void MarksInText::PageCame()
{
    PageLeft();
    m_isPageHere = true;
}

void MarksInText::PlacesChanged()
{
    m_areHeightsDue = true;
    AdvanceLater();
}

bool MarksInText::IsIdle() const
{
    return m_isPageHere && !m_isWaiting && !m_rows && !m_isFindingDue && !m_finder && !m_areHeightsDue &&
           !m_isAskingHeights;
}

void MarksInText::AdvanceLater()
{
    if (std::exchange(m_isWaiting, true))
        return;
    QTimer::singleShot(0, this, [this, turn = m_turn] {
        if (turn != m_turn)
            return;
        m_isWaiting = false;
        RunGuarded([this] { Advance(); });
    });
}

void MarksInText::Advance()
{
    if (m_isWaiting)
        return;
    if (m_rows) {
        ReadSome();
    } else if (!m_isPageHere) {
        return;
    } else if (m_isFindingDue || m_finder) {
        const bool isSought =
            std::any_of(m_excerpts.cbegin(), m_excerpts.cend(), [](const QString &words) { return !words.isEmpty(); });
        if (isSought && !m_hasText)
            Ask(u"writtenText", double(m_written.Size()), &MarksInText::TakeText);
        else
            FindSome();
    } else if (m_areHeightsDue || m_isAskingHeights) {
        AskHeights();
    } else {
        return;
    }
    AdvanceLater();
}

void MarksInText::Ask(QStringView function, const QVariant &argument, void (MarksInText::*take)(const QVariantMap &))
{
    // An answer may still come while the window ends.
    m_isWaiting = m_page.Ask(function, argument, [self = QPointer(this), turn = m_turn, take](const QVariant &answer) {
        if (!self || turn != self->m_turn)
            return;
        self->m_isWaiting = false;
        const QVariantMap map = answer.toMap();
        if (map.isEmpty()) {
            self->m_isPageHere = false; // the page ended
            return;
        }
        (self->*take)(map);
        self->Advance();
    });
    if (!m_isWaiting)
        m_isPageHere = false;
}

void MarksInText::ReadSome()
{
    QElapsedTimer clock;
    clock.start();
    bool isAtEnd = false;
    try {
        do {
            isAtEnd = !m_rows->FetchUpTo(m_row);
            if (!isAtEnd)
                ReadMark(m_row++);
        } while (!isAtEnd && clock.elapsed() < longestPiece);
    } catch (const std::exception &) {
        isAtEnd = true; // those that could be read are shown
    }
    if (!isAtEnd)
        return;
    m_rows.reset();
    m_marks = std::exchange(m_reading, {});
    m_excerpts = std::exchange(m_excerptsRead, {});
    m_isFindingDue = true;
}

void MarksInText::ReadMark(int row)
{
    const auto index = [this](const QString &field) { return m_rows->FieldByName(field).Index(); };
    m_rows->BlobInto(row, index(Field::TextFoc), m_excerpt);
    const auto text = [&](const QString &field) {
        return m_rows->TextAt(row, index(field)).remove(QChar::ByteOrderMark).trimmed();
    };
    QString hint = text(Field::NameFoc).simplified();
    if (const QString note = text(Field::DescFoc); !note.isEmpty())
        hint += u'\n' + note;
    m_reading.append({m_rows->ValueAt(row, index(Field::IdFoc)).toInt(),
                      m_rows->ValueAt(row, index(Field::PriorityFoc)).toInt(), hint});
    m_excerptsRead.append(IsShownWhole(m_excerpt) ? LettersOfExcerpt(m_excerpt) : QString());
}

void MarksInText::TakeText(const QVariantMap &answer)
{
    if (answer.value(u"from"_s).toLongLong() != m_written.Size())
        m_written = {}; // it begins anew
    m_written.Add(answer.value(u"text"_s).toString());
    m_hasText = answer.value(u"isLast"_s).toBool();
}

void MarksInText::FindSome()
{
    if (std::exchange(m_isFindingDue, false)) {
        m_finder = std::make_unique<ExcerptFinder>(m_written.Letters(), m_excerpts);
        return;
    }
    QElapsedTimer clock;
    clock.start();
    bool isAtEnd = false;
    while (!isAtEnd && clock.elapsed() < longestPiece)
        isAtEnd = !m_finder->Go(lettersAtOnce);
    if (isAtEnd) {
        m_places = m_finder->Found();
        m_finder.reset();
        m_areHeightsDue = true;
        m_isAskingHeights = false;
    }
}

void MarksInText::AskHeights()
{
    // What changes meanwhile is asked for when these are here.
    if (!std::exchange(m_isAskingHeights, true)) {
        m_areHeightsDue = false;
        m_areHitsHere = false;
        m_heights.clear();
        m_hitHeights.clear();
    }
    if (!m_areHitsHere) {
        Ask(u"hitHeights", double(m_hitHeights.size()), &MarksInText::TakeHits);
        return;
    }
    if (m_heights.size() >= m_places.size()) {
        m_isAskingHeights = false;
        Show();
        return;
    }
    QVariantList characters;
    for (const ExcerptPlace &place : m_places.mid(m_heights.size(), placesAtOnce))
        characters.append(double(m_written.PlaceOf(place.letter)));
    Ask(u"textHeights", QVariantMap{{u"characters"_s, characters}}, &MarksInText::TakeHeights);
}

void MarksInText::TakeHits(const QVariantMap &answer)
{
    m_hitHeights += Numbers(answer.value(u"heights"_s));
    m_areHitsHere = answer.value(u"isLast"_s).toBool();
}

void MarksInText::TakeHeights(const QVariantMap &answer)
{
    m_heights += Numbers(answer.value(u"heights"_s));
}

void MarksInText::Show()
{
    QList<TMarkStrip::Line> lines;
    m_targets.clear();
    const auto add = [&](double height, StripKind kind, const QString &hint, const Target &target) {
        if (height < 0)
            return; // does not show
        lines.append({height, kind, hint});
        m_targets.push_back(target);
    };
    for (qsizetype hit = 0; hit < m_hitHeights.size(); ++hit)
        add(m_hitHeights[hit], StripKind::Hit, TextOrEnglish(hitHint), {0, 0, hit});
    for (qsizetype place = 0; place < m_places.size(); ++place) {
        const TextMark &mark = m_marks[m_places[place].excerpt];
        add(m_heights[place], KindOf(mark.priority), mark.hint,
            {mark.key, m_written.PlaceOf(m_places[place].letter), -1});
    }
    m_strip.SetLines(lines);
    if (OnShow)
        OnShow();
}

void MarksInText::GoTo(qsizetype line)
{
    const Target &target = m_targets[static_cast<size_t>(line)];
    const bool isHit = target.hit >= 0;
    m_page.Ask(isHit ? u"placeOfHit" : u"placeOfCharacter", double(isHit ? target.hit : target.character),
               [self = QPointer(this), turn = m_turn](const QVariant &answer) {
                   const QVariantMap place = answer.toMap();
                   if (self && turn == self->m_turn && !place.isEmpty() && self->OnGo)
                       self->OnGo(PlaceOf(place));
               });
}

void MarksInText::OpenMark(qsizetype line) const
{
    const Target &target = m_targets[static_cast<size_t>(line)];
    if (target.hit < 0 && OnOpen)
        OnOpen(target.mark);
}
