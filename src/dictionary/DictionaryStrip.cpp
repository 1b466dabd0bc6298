#include "dictionary/Dictionary.h"

#include "base/InterfaceLanguage.h"
#include "base/Texts.h"
#include "dictionary/DictionaryDM.h"
#include "dictionary/DictionaryForms.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Guard.h"
#include "ui_Dictionary.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {

// The list and the entry show before the search for forms begins, and between its pieces the window lives.
constexpr int SeekDelay = 40;         // milliseconds
constexpr int PieceMilliseconds = 20; // of work
// A word stands before those that it begins, save for other capitals.
constexpr int FirstRows = 16;
constexpr int RowsAtOnce = 64;
constexpr int MostRows = 20'000; ///< of the rows read so far that are looked through for a word
constexpr qsizetype MostShown = 100;

} // namespace

void TfrmDictionary::SetUpStrip()
{
    TimerForms.setObjectName(u"TimerForms"_s);
    TimerForms.setSingleShot(true);
    ConnectGuarded(&TimerForms, &QTimer::timeout, this, [this] { TimerFormsTimer(); });
    ui->lstForms->OnOpen = [this](const FoundWord &word) { OpenForm(word); };
    for (QAction *action : {ui->acForms, ui->acWordBack, ui->acWordForward})
        addAction(action);
    ConnectGuarded(ui->acForms, &QAction::triggered, this, [this] { acFormsExecute(); });
    ConnectGuarded(ui->acWordBack, &QAction::triggered, this, [this] { StepShown(-1); });
    ConnectGuarded(ui->acWordForward, &QAction::triggered, this, [this] { StepShown(1); });
    EnableSteps();
}

/// Ends what is being looked for, and empties the strip.
void TfrmDictionary::DropForms()
{
    if (m_keepsStrip)
        return;
    TimerForms.stop();
    if (ui->lstForms->hasFocus())
        ui->edSearchWord->setFocus();
    ui->lstForms->ShowWords({}, InterfaceLang);
}

/// Looks for the words behind what the list was read for.
void TfrmDictionary::SeekForms()
{
    if (m_keepsStrip)
        return;
    m_soughtText = TrimControls(ui->edSearchWord->text());
    m_sought = m_handedOver.value_or(SoughtForm{m_soughtText, {}});
    m_sought.kind = vTypeDict;
    if (frmDictionaryDM && !m_sought.form.isEmpty() && !KindsToSeek(m_sought.kind).isEmpty())
        BeginSeeking();
}

void TfrmDictionary::BeginSeeking()
{
    m_isListed.reset();
    m_rowsSeen = 0;
    TimerForms.start(SeekDelay);
}

void TfrmDictionary::TimerFormsTimer()
{
    // The strip is an offer: a dictionary that can't tell does not get a message.
    try {
        if (!m_formSearch) {
            m_forms = std::make_unique<DictionaryForms>(frmDictionaryDM->dbDictionary, frmDictionaryDM->trDictionary);
            m_formSearch = std::make_unique<FormSearch>(*m_forms);
        }
        if (!m_isListed) {
            m_isListed = IsSoughtListed();
            if (m_isListed)
                m_formSearch->Start(m_sought, *m_isListed, InterfaceLang);
        } else if (m_formSearch->GoOn(PieceMilliseconds)) {
            ui->lstForms->ShowWords(m_formSearch->Found(), InterfaceLang);
            return;
        }
        TimerForms.start(0);
    } catch (const std::exception &) {
        DropForms();
    }
}

/// Whether a word of the list is the one sought; nothing while that is not known yet.
std::optional<bool> TfrmDictionary::IsSoughtListed()
{
    const int most = m_rowsSeen == 0 ? FirstRows : m_rowsSeen + RowsAtOnce;
    const bool hasMore = qryWords.FetchUpTo(most - 1);
    for (const int end = std::min(most, qryWords.RecordCount()); m_rowsSeen < end; ++m_rowsSeen) {
        const QString word = qryWords.TextAt(m_rowsSeen, 0);
        if (IsSameWord(word, m_sought.form) || IsSameWord(word, m_soughtText))
            return true;
    }
    if (!hasMore)
        return false;
    // Further down it is only in a list of another order, and not if the dictionary does not have it.
    if (m_rowsSeen == FirstRows &&
        !m_forms->Have(m_sought.kind, {m_sought.form.toLower(), m_soughtText.toLower()}).contains(true))
        return false;
    return std::nullopt;
}

void TfrmDictionary::OpenForm(const FoundWord &word)
{
    // The others of the strip stay within reach.
    const QScopedValueRollback keepsStrip(m_keepsStrip, true);
    const QScopedValueRollback opened(m_opened, word.word);
    SelectDictionary(word.kind, word.word);
}

void TfrmDictionary::acFormsExecute()
{
    if (ui->lstForms->isVisible() && !ui->lstForms->hasFocus())
        ui->lstForms->setFocus(Qt::ShortcutFocusReason);
    else
        ui->edSearchWord->setFocus(Qt::ShortcutFocusReason);
}

/// The row of a word in the list as far as it was read; -1 if it is not among the first `most`.
int TfrmDictionary::RowOfWord(const QString &word, int most)
{
    const int end = qryWords.Active() ? std::min(most, qryWords.RecordCount()) : 0;
    for (int row = 0; row < end; ++row) {
        if (qryWords.TextAt(row, 0) == word)
            return row;
    }
    return -1;
}

/// Shows the entry of a word of the list at once; false if the list does not have it among the rows read so far.
bool TfrmDictionary::StandOn(const QString &word)
{
    const int row = RowOfWord(word, MostRows);
    if (row < 0)
        return false;
    if (row != qryWords.RecNo()) {
        qryWords.MoveTo(row);
        TimerEndScroll.stop();
        ShowWordContent();
    }
    return true;
}

/// Moves a list that has just been read to the word that is being opened.
void TfrmDictionary::StandOnOpened()
{
    if (m_opened.isEmpty())
        return;
    qryWords.FetchUpTo(RowsAtOnce - 1);
    if (const int row = RowOfWord(m_opened, RowsAtOnce); row >= 0)
        qryWords.MoveTo(row);
}

/// Keeps the word whose entry has come on show.
void TfrmDictionary::TakeShown()
{
    if (m_isStepping)
        return;
    const ShownWord shown{qryWords.FieldByName(Field::DictType).AsInteger(), LastWord};
    if (!LastWord.isEmpty() && (m_shownAt < 0 || m_shown[m_shownAt] != shown)) {
        m_shown.resize(m_shownAt + 1);
        m_shown.append(shown);
        if (m_shown.size() > MostShown)
            m_shown.removeFirst();
        m_shownAt = m_shown.size() - 1;
    }
    EnableSteps();
}

/// The place of the word that a step leads to, among those shown; none if there is none. With an empty list on show the
/// step back leads to the last word.
std::optional<qsizetype> TfrmDictionary::StepLeadsTo(int step) const
{
    const qsizetype to = m_shownAt + (step < 0 && LastWord.isEmpty() ? 0 : step);
    return to >= 0 && to < m_shown.size() ? std::optional(to) : std::nullopt;
}

void TfrmDictionary::EnableSteps()
{
    ui->acWordBack->setEnabled(StepLeadsTo(-1).has_value());
    ui->acWordForward->setEnabled(StepLeadsTo(1).has_value());
}

void TfrmDictionary::StepShown(int step)
{
    const std::optional<qsizetype> to = StepLeadsTo(step);
    if (!to)
        return;
    m_shownAt = *to;
    {
        const ShownWord shown = m_shown[*to];
        const QScopedValueRollback isStepping(m_isStepping, true);
        OpenWord(shown.kind, shown.word);
    }
    EnableSteps();
}

void TfrmDictionary::OpenWord(int kind, const QString &word)
{
    if (kind == vTypeDict && StandOn(word))
        return;
    const QScopedValueRollback opened(m_opened, word);
    if (KindsToSeek(kind).isEmpty()) { // no command chooses it
        vTypeDict = kind;
        ui->edSearchWord->setText(word);
        RefreshWordList();
    } else {
        SelectDictionary(kind, word);
    }
}
