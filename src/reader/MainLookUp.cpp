#include "reader/Main.h"

#include "base/Texts.h"
#include "dictionary/Dictionary.h"
#include "dictionary/DictionaryDM.h"
#include "dictionary/WordRules.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

namespace {

const QString dictionaryName = QStringLiteral("frmDictionary");

} // namespace

TfrmDictionary &TfrmMain::OpenDictionary()
{
    std::exception_ptr failure;
    QWidget *form = OpenForm(dictionaryName, [&] {
        auto *dictionary = new TfrmDictionary;
        // If the dictionary can't be read, the window stays open so that another one can be chosen.
        try {
            dictionary->FormCreate();
        } catch (const std::exception &) {
            failure = std::current_exception();
        }
        return dictionary;
    });
    if (failure)
        std::rethrow_exception(failure);
    return static_cast<TfrmDictionary &>(*form);
}

void TfrmMain::LookUpWord(const std::function<QString()> &takeWord)
{
    ShowWaitCursor(true);
    // Look-ups deliberately report no failures.
    try {
        const QString word = takeWord();
        // Including those of the list, which fetches under its own guard.
        const QuietGuards quiet;
        const bool isOpen = FindForm(dictionaryName);
        DictionaryKind = DictionaryKindOf(ShownLanguage(), DictionaryKind);
        TfrmDictionary &dictionary = OpenDictionary();
        if (isOpen)
            dictionary.LookUp(DictionaryKind, word);
        else
            dictionary.SearchingText(word);
    } catch (const std::exception &) {
    }
    ShowWaitCursor(false);
}

void TfrmMain::acGetWordExecute()
{
    LookUpWord([this] { return TrimControls(ui->ebContent->GetSelectedText()); });
}

void TfrmMain::ebContentClick(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x, int y)
{
    if (button != Qt::RightButton || !modifiers.testFlag(Qt::ControlModifier) || !frmDictionaryDM ||
        !frmDictionaryDM->vIsOKDictionary)
        return;
    LookUpWord([this, x, y] { return LowerForm(ui->ebContent->GetWordAtCursor(x, y)); });
}
