#include "reader/Main.h"

#include "base/Texts.h"
#include "dictionary/Dictionary.h"
#include "dictionary/DictionaryDM.h"
#include "dictionary/WordRules.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/settings/Options.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

namespace {

const QString dictionaryName = QStringLiteral("frmDictionary");

} // namespace

TfrmDictionary &TfrmMain::OpenDictionary(bool isForWord)
{
    std::exception_ptr failure;
    QWidget *form = OpenForm(dictionaryName, [&] {
        auto *dictionary = new TfrmDictionary;
        // If the dictionary can't be read, the window stays open so that another one can be chosen.
        try {
            dictionary->FormCreate(isForWord);
        } catch (const std::exception &) {
            failure = std::current_exception();
        }
        return dictionary;
    });
    if (failure)
        std::rethrow_exception(failure);
    return static_cast<TfrmDictionary &>(*form);
}

void TfrmMain::LookUpWord(const std::function<QString(Neighbours &around)> &takeWord)
{
    ShowWaitCursor(true);
    // Look-ups deliberately report no failures.
    try {
        Neighbours around;
        const QString word = takeWord(around);
        // Including those of the list, which fetches under its own guard.
        const QuietGuards quiet;
        const bool isOpen = FindForm(dictionaryName);
        DictionaryKind = DictionaryKindOf(ShownLanguage(), DictionaryKind);
        TfrmDictionary &dictionary = OpenDictionary(true);
        if (isOpen)
            dictionary.LookUp(DictionaryKind, word, around);
        else
            dictionary.SearchingText(word, around);
    } catch (const std::exception &) {
    }
    ShowWaitCursor(false);
}

void TfrmMain::acGetWordExecute()
{
    LookUpWord([this](Neighbours &) { return TrimControls(ui->ebContent->GetSelectedText()); });
}

void TfrmMain::ebContentClick(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x, int y)
{
    if (button != Qt::RightButton || !modifiers.testFlag(Qt::ControlModifier) || !frmDictionaryDM ||
        !frmDictionaryDM->vIsOKDictionary)
        return;
    LookUpWord([this, x, y](Neighbours &around) {
        // Some languages write a word in several syllables, and the mouse is on one of them.
        const PageWord place = ui->ebContent->GetWordWithNeighbours(x, y, FormFinder::MostSyllables - 1);
        around = {place.before, place.after};
        return LowerForm(place.word);
    });
}
