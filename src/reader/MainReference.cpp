#include "reader/Main.h"

#include "base/InterfaceLanguage.h"
#include "base/Messages.h"
#include "everywhere/EverywhereTexts.h"
#include "reader/Reference.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QCompleter>
#include <QGuiApplication>
#include <QMimeData>
#include <QStringListModel>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostCandidates = 12;

constexpr Message collectionName{u"Tạng Luật", u"Kelora"}; ///< as before an excerpt
constexpr Message noSuchText{u"Không có bài nào như vậy.", u"There is no such text."};
constexpr Message hasReference{u"Đã sao chép kèm xuất xứ %1.", u"Copied with the reference %1."};

} // namespace

void TfrmMain::SetUpReference()
{
    auto *completer = new QCompleter(new QStringListModel(this), this);
    // What is shown is ours: names are found without their marks.
    completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer->setMaxVisibleItems(mostCandidates);
    ui->edReference->setCompleter(completer);
    ConnectGuarded(ui->edReference, &QLineEdit::textEdited, this, [this] { ShowCandidates(); });
    ConnectGuarded(ui->edReference, &QLineEdit::returnPressed, this, [this] { GoToTyped(ui->edReference->text()); });
    ConnectGuarded(completer, qOverload<const QString &>(&QCompleter::activated), this,
                   [this](const QString &row) { GoToTyped(row.section(u' ', 0, 0)); });
    ui->edReference->OnKeyDown = [this](int key, const QString &) {
        if (key == Qt::Key_Escape)
            CloseReference();
    };
}

void TfrmMain::acReferenceExecute()
{
    if (ui->barFoot->isHidden()) {
        ui->acFoot->setChecked(true);
        ShowFoot(true);
    }
    TellInFoot({});
    ui->edReference->show();
    ui->edReference->selectAll();
    ui->edReference->setFocus(Qt::ShortcutFocusReason);
}

void TfrmMain::CloseReference()
{
    ui->edReference->completer()->popup()->hide();
    ui->ebContent->setFocus(Qt::ShortcutFocusReason);
    ui->edReference->hide();
}

const QList<KeloraText> &TfrmMain::Texts()
{
    if (m_texts.isEmpty()) {
        m_texts = KeloraTexts(frmKeloraDM->dbKelora, frmKeloraDM->trKelora);
        std::ranges::sort(m_texts, {}, &KeloraText::number);
    }
    return m_texts;
}

void TfrmMain::ShowCandidates()
{
    QStringList rows;
    for (const auto &[number, name] : CandidatesFor(ui->edReference->text(), Texts(), mostCandidates))
        rows.append(u"%1  %2"_s.arg(number).arg(name.isEmpty() ? NameOfText(number) : name));
    QCompleter *completer = ui->edReference->completer();
    static_cast<QStringListModel *>(completer->model())->setStringList(rows);
    if (rows.isEmpty())
        completer->popup()->hide();
    else
        completer->complete();
}

void TfrmMain::GoToTyped(const QString &typed)
{
    // Enter in the list of candidates may reach the line, too.
    if (ui->edReference->isHidden())
        return;
    std::optional<Reference> reference = ReadReference(typed);
    if (!reference) {
        const QList<Candidate> candidates = CandidatesFor(typed, Texts(), 1);
        if (!candidates.isEmpty())
            reference = Reference{candidates.first().number, std::nullopt};
    }
    if (!reference || NameOfText(reference->text).isNull() || !GoToReference(reference->text, reference->place)) {
        TellInFoot(TextOrEnglish(noSuchText));
        return;
    }
    CloseReference();
}

bool TfrmMain::GoToReference(int text, const std::optional<PagePlace> &place)
{
    if (text != TextOnShow()) {
        m_given = place;
        bool isFound = false;
        const bool isDone = RunGuarded([&] { isFound = OpenInWholeTree(text); });
        m_given.reset();
        return isDone && isFound;
    }
    if (place) {
        LeavePlace();
        ++m_textNumber; // a place that is still asked for is no longer the one to have
        m_history.Add({text, ShownLanguage(), *place}, Doors().clock());
        m_wanted = place;
        GoToWantedPlace();
    }
    return true;
}

void TfrmMain::acCopyReferenceExecute()
{
    const Place shown = m_shown;
    const QString text = ui->ebContent->GetSelectedText();
    const PagePlace place = ui->ebContent->SelectedPlace();
    const QString html = ui->ebContent->GetSelectedHtml();
    if (text.isEmpty() || html.isEmpty())
        return; // the page was destroyed meanwhile
    QString name;
    for (const KeloraText &known : Texts()) {
        if (known.number == shown.text)
            name = shown.language == PageMode::Pali       ? known.pali
                   : shown.language == PageMode::English  ? known.english
                   : shown.language == PageMode::Parallel ? NameOfText(known.number)
                                                          : known.vietnamese;
    }
    const Source source{TextOrEnglish(collectionName), name, ReferenceTo(shown.text, place),
                        PageModeName(shown.language)};
    const QString told = SourceText(Get<QString>(frmKeloraDM->vOurOptions, Option::ReferenceForm), source);
    auto *data = new QMimeData;
    data->setText(text + u' ' + told);
    data->setHtml(html + u' ' + told.toHtmlEscaped());
    QGuiApplication::clipboard()->setMimeData(data);
    TellInFoot(TextOrEnglish(hasReference).arg(source.reference));
}
