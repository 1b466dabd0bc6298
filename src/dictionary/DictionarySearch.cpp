#include "dictionary/Dictionary.h"

#include "base/Texts.h"
#include "dictionary/SoughtForms.h"
#include "dictionary/WordRules.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/controls/VelthuisTyping.h"
#include "toolkit/program/Guard.h"
#include "ui_Dictionary.h"

#include <QScopeGuard>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int EndScrollRest = 300; ///< milliseconds without a move in the list until the entry is shown

} // namespace

void TfrmDictionary::SetUpSearch()
{
    TimerDelta.setObjectName(u"TimerDelta"_s);
    TimerDelta.setInterval(DebounceTick);
    TimerDelta.setTimerType(Qt::PreciseTimer);
    ConnectGuarded(&TimerDelta, &QTimer::timeout, this, [this] { TimerDeltaTimer(); });
    ui->edSearchWord->OnKeyDown = [this](int key, const QString &text) { edSearchWordKeyDown(key, text); };

    TimerEndScroll.setSingleShot(true);
    TimerEndScroll.setInterval(EndScrollRest);
    ConnectGuarded(&TimerEndScroll, &QTimer::timeout, this, [this] { qryWordsEndScroll(); });
    qryWords.AfterScroll = [this] { TimerEndScroll.start(); };
}

void TfrmDictionary::SetUpTyping()
{
    const auto isMeant = [this] { return frmKeloraDM && frmKeloraDM->TypesPali() && IsOfPaliWords(vTypeDict); };
    new VelthuisTyping(*ui->edSearchWord, isMeant, [this] { return Niggahita(); });
}

QChar TfrmDictionary::Niggahita()
{
    if (const auto known = m_niggahitas.find(vTypeDict); known != m_niggahitas.end())
        return known->second;
    QChar letter;
    try {
        letter =
            NiggahitaOfWords([this](const QString &word) { return HasWord(vTypeDict, TestedForm(vTypeDict, word)); });
    } catch (const std::exception &) {
        letter = NiggahitaOfWords([](const QString &) { return false; });
    }
    qryCheckWord.Close();
    return m_niggahitas[vTypeDict] = letter;
}

void TfrmDictionary::edSearchWordKeyDown(int key, const QString &text)
{
    switch (MeaningOfWordKey(key, text)) {
    case WordKey::Nothing:
        break;
    case WordKey::Typing:
        vDeltaT = 0;
        if (!TimerDelta.isActive())
            TimerDelta.start();
        break;
    case WordKey::NextRow:
        if (!qryWords.Eof())
            qryWords.Next();
        break;
    case WordKey::PriorRow:
        if (!qryWords.Bof())
            qryWords.Prior();
        break;
    case WordKey::NextPage:
        if (!qryWords.Eof())
            qryWords.MoveTo(qryWords.RecNo() + WordPage);
        break;
    case WordKey::PriorPage:
        if (!qryWords.Bof())
            qryWords.MoveTo(qryWords.RecNo() - WordPage);
        break;
    }
}

void TfrmDictionary::TimerDeltaTimer()
{
    if (TickDebounce(vDeltaT))
        RunWordSearch();
}

void TfrmDictionary::RunWordSearch()
{
    RefreshWordList();
    if (FIsStartPage || !qryWords.IsEmpty())
        return;
    // The previous word's entry could not be replaced, but it must not be shown beside an empty list.
    try {
        SaveHTMLFormatted();
        ui->ebContentWord->LoadFromString(vHTMLString);
    } catch (const std::exception &) {
    }
}

void TfrmDictionary::RefreshWordList()
{
    if (vIsInit && m_isForWord) {
        m_isListDue = true;
        return;
    }
    DropForms();
    const QString text = ui->edSearchWord->text();
    qryContents.Close();
    {
        qryWords.DisableControls();
        qryWords.DisableScrollEvents();
        // Also after a failure: otherwise the grid would stay without its list.
        const auto enable = qScopeGuard([this] {
            qryWords.EnableScrollEvents();
            qryWords.EnableControls();
        });
        qryWords.Close();
        qryWords.SelectSQL() = vWordsDefQry;
        const bool isFiltered = !TrimControls(text).isEmpty();
        if (isFiltered) {
            qryWords.SelectSQL().append(
                u"WHERE (e.WORD_NAME starting with :SEARCHTEXT) or  (e.WORD_NAME starting with :SEARCHTEXT_MIXER)"_s);
            qryWords.ParamByName(u"SEARCHTEXT"_s).SetAsString(LowerForm(text));
            qryWords.ParamByName(u"SEARCHTEXT_MIXER"_s).SetAsString(MixedForm(text));
        }
        qryWords.ParamByName(Parameter::ADict).SetAsInteger(vTypeDict);
        if (m_soughtForms)
            m_soughtForms->Tell(isFiltered ? LowerForm(text) : QString(), isFiltered ? MixedForm(text) : QString());
        qryWords.Open();
        if (vIsInit && !LastWord.isEmpty())
            qryWords.Locate(Field::WordName, LastWord);
        StandOnOpened();
    }
    TimerEndScroll.stop();
    qryContents.ParamByName(Parameter::MultiDict).SetAsBoolean(MultiDictionary);
    qryContents.Open();
    ShowWordContent();
    SeekForms();
}

bool TfrmDictionary::HasWord(int kind, const QString &form)
{
    qryCheckWord.Close();
    qryCheckWord.ParamByName(Parameter::AWord).SetAsString(form);
    qryCheckWord.ParamByName(Parameter::TypeDict).SetAsInteger(kind);
    qryCheckWord.Open();
    return qryCheckWord.FieldByName(Field::Result).AsInteger() == 1;
}

void TfrmDictionary::SearchingText(const QString &text, const Neighbours &around)
{
    ui->edSearchWord->setText(TrimControls(text));
    const QScopedValueRollback handedOver(m_handedOver, std::optional(SoughtForm{TrimControls(text), around}));
    m_isForWord = false;
    const bool isListDue = std::exchange(m_isListDue, false);
    try {
        SearchInPair();
    } catch (...) {
        if (isListDue && !qryWords.Active())
            ListAsOpened();
        throw;
    }
}

void TfrmDictionary::SearchInPair()
{
    const auto contains = [this](int kind, const QString &form) { return HasWord(kind, form); };
    const auto place = FindDictionary(vTypeDict, ui->edSearchWord->text(), contains);
    qryCheckWord.Close();
    if (!place) {
        RunWordSearch();
        return;
    }
    // A plural is shortened before the text of the kind being left is stored. The switch reads the list, so reading it
    // again is not necessary.
    ui->edSearchWord->setText(place->text);
    SelectDictionary(place->kind, place->text);
}

/// The list that a window has which opens without a word, for one that has failed to list its word's. If that fails,
/// too, the box stays empty.
void TfrmDictionary::ListAsOpened()
{
    const QString text = ui->edSearchWord->text();
    ui->edSearchWord->clear();
    {
        const QScopedValueRollback handedOver(m_handedOver, std::optional<SoughtForm>());
        const QScopedValueRollback isInit(vIsInit, true);
        RefreshWordList();
    }
    ui->edSearchWord->setText(text);
}

void TfrmDictionary::LookUp(int kind, const QString &text, const Neighbours &around)
{
    vTypeDict = kind;
    SearchingText(text, around);
}

void TfrmDictionary::qryWordsEndScroll()
{
    if (!vIsInit)
        ShowWordContent();
}

void TfrmDictionary::acGotoWordExecute()
{
    SearchingText(ui->ebContentWord->GetSelectedText());
}
