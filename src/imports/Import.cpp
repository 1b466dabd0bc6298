#include "imports/Import.h"

#include "base/InterfaceLanguage.h"
#include "base/Messages.h"
#include "dictionary/WordRules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_Import.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>

#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitImportTexts()
{
    Q_INIT_RESOURCE(imports);
}

namespace {

constexpr Message notThere{u"Không có tệp hay thư mục này.", u"There is no such file or folder."};
constexpr Message unknownForm{
    u"Không nhận ra loại tệp này. Có thể nhập: thư mục kinh sách, từ điển StarDict (.ifo), bảng từ (.tsv, .tab, .txt), "
    u"kho kinh sách (.FDB).",
    u"This kind of file is not known. What can be imported: a folder of texts, a StarDict dictionary (.ifo), a table "
    u"of words (.tsv, .tab, .txt), a canon (.FDB)."};
constexpr Message looking{u"Đang xem trước: %1", u"Looking at %1"};
constexpr Message importing{u"Đang nhập: %1", u"Importing %1"};
constexpr Message nothingLeftOut{u"Tất cả sẽ được nhập.", u"Everything will be taken."};
constexpr Message leftOut{u"Sẽ không nhập được (%1):", u"Would be left out or changed (%1):"};
constexpr Message andMore{u"… và %1 mục nữa", u"… and %1 more"};
constexpr Message licence{u"Giấy phép: %1", u"Licence: %1"};
constexpr Message canonTarget{u"Kho kinh sách", u"The canon"};
constexpr Message nothingTaken{u"Không nhập được gì, và không có gì thay đổi.\n\n%1",
                               u"Nothing could be taken, and nothing has changed.\n\n%1"};
constexpr Message crashed{u"Công cụ nhập đã dừng bất ngờ; không có gì thay đổi.",
                          u"The import tool has stopped unexpectedly; nothing has changed."};
constexpr Message cancelled{u"Đã hủy; không có gì thay đổi.", u"Cancelled; nothing has changed."};
constexpr Message done{u"Đã nhập xong: %1", u"Imported: %1"};
constexpr Message isOpen{u"Bản mới đang được dùng.", u"The new file is in use."};
constexpr Message needsRestart{u"Hãy khởi động lại chương trình để dùng bản mới:\n%1",
                               u"Start the program again to use the new file:\n%1"};
constexpr Message oldStays{u"Bản cũ được giữ lại: %1", u"The old file stays: %1"};
constexpr Message importedStays{u"Bản đã nhập được giữ lại: %1", u"The imported file stays: %1"};
constexpr Message notWhole{u"Bản mới đã được đặt vào chỗ, nhưng việc chưa xong:\n%1",
                           u"The new file is in its place, but the work did not come to its end:\n%1"};
constexpr Message takingBack{u"Đang lấy lại: %1", u"Taking back %1"};
constexpr Message takenBack{u"Đã lấy lại bản cũ.", u"The old file is back."};
constexpr Message marksStay{
    u"Đã lấy lại bản cũ. Những ghi chép đã chuyển sang bài của bản mới thì chưa chuyển lại được:\n%1",
    u"The old file is back. Marks that had gone with the texts of the new one could not be taken back:\n%1"};
constexpr Message cannotTakeBack{u"Không lấy lại được bản cũ:\n%1", u"The old file can't be taken back:\n%1"};
constexpr Message folderTitle{u"Chọn thư mục", u"Choose a folder"};
constexpr Message fileTitle{u"Chọn tệp", u"Choose a file"};
constexpr Message fileKinds{u"Kinh sách và từ điển (*.ifo *.tsv *.tab *.txt *.FDB *.fdb);;Mọi tệp (*)",
                            u"Texts and dictionaries (*.ifo *.tsv *.tab *.txt *.FDB *.fdb);;All files (*)"};

/// The words of a list of kinds, for the languages that have some.
QString KindText(int kind)
{
    const QString text = DictionaryCaption(kind, InterfaceLang);
    constexpr int english = 1;
    return text.isEmpty() ? DictionaryCaption(kind, english) : text;
}

QString CountsText(const ImportReport &report)
{
    QStringList words;
    for (const auto &[what, number] : report.counts)
        if (number > 0)
            words += CountText(what, number);
    return words.join(u", "_s);
}

} // namespace

QString DroppedPath(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

TfrmImport::TfrmImport(std::function<void(ImportTarget)> openNew, QWidget *parent)
    : QWidget(parent), m_openNew(std::move(openNew)), m_run(this), ui(std::make_unique<Ui::frmImport>())
{
    InitImportTexts();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    CentreOnScreen(*this);
    ConnectGuarded(ui->btnFolder, &QPushButton::clicked, this, [this] { ChooseFolder(); });
    ConnectGuarded(ui->btnFile, &QPushButton::clicked, this, [this] { ChooseFile(); });
    ConnectGuarded(ui->edSource, &QLineEdit::textChanged, this, [this](const QString &text) {
        ui->btnLook->setEnabled(!text.isEmpty());
        ui->lbSourceFault->clear();
    });
    ConnectGuarded(ui->btnLook, &QPushButton::clicked, this, [this] { Look(ui->edSource->text()); });
    ConnectGuarded(ui->btnImport, &QPushButton::clicked, this, [this] { StartImport(); });
    ConnectGuarded(ui->btnBack, &QPushButton::clicked, this, [this] { GoTo(Step::Source); });
    ConnectGuarded(ui->btnCancel, &QPushButton::clicked, this, [this] { Cancel(); });
    ConnectGuarded(ui->btnClose, &QPushButton::clicked, this, [this] { close(); });
    ConnectGuarded(ui->btnTakeBack, &QPushButton::clicked, this, [this] { TakeBack(); });
    ConnectGuarded(&m_run, &ImportRun::Progressed, this, [this](ImportProgress progress) { ShowProgress(progress); });
    ConnectGuarded(&m_run, &ImportRun::Ended, this,
                   [this](const ImportReport &report, bool wasCancelled) { TakeEnd(report, wasCancelled); });
    ui->btnLook->setEnabled(false);
    GoTo(Step::Source);
}

TfrmImport::~TfrmImport() = default;

void TfrmImport::GoTo(Step step)
{
    m_step = step;
    const bool isWork = step == Step::Looking || step == Step::Importing;
    QWidget *const pages[]{ui->tsSource, ui->tsWork, ui->tsFound, ui->tsWork, ui->tsDone};
    ui->pgImport->setCurrentWidget(pages[static_cast<int>(step)]);
    ui->btnBack->setVisible(step == Step::Found || step == Step::Done);
    ui->btnLook->setVisible(step == Step::Source);
    ui->btnImport->setVisible(step == Step::Found);
    ui->btnCancel->setVisible(isWork);
    ui->btnClose->setVisible(!isWork);
    QWidget *const first[]{ui->edSource, ui->btnCancel, ui->btnImport, ui->btnCancel, ui->btnClose};
    first[static_cast<int>(step)]->setFocus();
    for (QPushButton *button : {ui->btnLook, ui->btnImport, ui->btnCancel, ui->btnClose})
        button->setDefault(button->hasFocus());
}

void TfrmImport::ChooseFolder()
{
    const QString path = QFileDialog::getExistingDirectory(this, TextOrEnglish(folderTitle), ui->edSource->text());
    if (!path.isEmpty())
        Look(path);
}

void TfrmImport::ChooseFile()
{
    const QString path =
        QFileDialog::getOpenFileName(this, TextOrEnglish(fileTitle), ui->edSource->text(), TextOrEnglish(fileKinds));
    if (!path.isEmpty())
        Look(path);
}

void TfrmImport::Look(const QString &path)
{
    if (m_run.IsRunning() || path.isEmpty())
        return;
    GoTo(Step::Source);
    ui->edSource->setText(QDir::toNativeSeparators(path));
    const std::optional<ImportTarget> target = TargetOf(path);
    if (!target) {
        ui->lbSourceFault->setText(TextOrEnglish(QFileInfo::exists(path) ? unknownForm : notThere));
        return;
    }
    m_job = {.source = QFileInfo(path).absoluteFilePath(),
             .target = *target,
             .kind = IsOneOf(DictKind::All, DictionaryKind) ? DictionaryKind : DictKind::PaliVietnamese,
             .isTrial = true,
             .programFolder = AppPath};
    ui->lbWork->setText(TextOrEnglish(looking).arg(QDir::toNativeSeparators(path)));
    ShowProgress({});
    GoTo(Step::Looking);
    m_run.Start(m_job);
}

void TfrmImport::StartImport()
{
    if (m_job.target == ImportTarget::Dictionary)
        m_job.kind = ui->cbTarget->currentData().toInt();
    m_job.replaces = ui->rbInPlace->isChecked();
    m_isTakingBack = false;
    Run(TextOrEnglish(importing));
}

void TfrmImport::Run(const QString &work)
{
    m_job.isTrial = false;
    m_before = FileStamp::Of(m_job.File());
    ui->lbWork->setText(work.arg(QDir::toNativeSeparators(m_job.source)));
    ShowProgress({});
    GoTo(Step::Importing);
    m_run.Start(m_job);
}

bool TfrmImport::HasReplaced() const
{
    return !FileStamp::Of(m_job.File()).IsSameFile(m_before);
}

void TfrmImport::Cancel()
{
    ui->btnCancel->setEnabled(false);
    m_run.Cancel();
}

void TfrmImport::ShowProgress(ImportProgress progress)
{
    // Without a total the bar only shows that something happens.
    constexpr int parts = 1000;
    ui->pbImport->setMaximum(progress.total > 0 ? parts : 0);
    if (progress.total > 0)
        ui->pbImport->setValue(
            static_cast<int>(std::clamp<qint64>(progress.done, 0, progress.total) * parts / progress.total));
}

void TfrmImport::TakeEnd(const ImportReport &report, bool wasCancelled)
{
    ui->btnCancel->setEnabled(true);
    if (report.isDone && m_job.isTrial)
        return ShowFound(report);
    if (report.isDone)
        return ShowDone(m_isTakingBack ? TextOrEnglish(takenBack) : TextOrEnglish(done).arg(CountsText(report)));
    const QString failure = report.failure.isEmpty() ? TextOrEnglish(crashed) : report.failure;
    // The list of texts and the marks come behind the canon itself, and can fail alone.
    if (!m_job.isTrial && HasReplaced())
        return ShowDone(TextOrEnglish(notWhole).arg(failure));
    if (m_isTakingBack && !wasCancelled)
        return RenameBack(failure);
    GoTo(Step::Source);
    if (wasCancelled)
        ui->lbSourceFault->setText(TextOrEnglish(cancelled));
    else if (report.failure.isEmpty())
        ui->lbSourceFault->setText(failure);
    else
        ui->lbSourceFault->setText(TextOrEnglish(nothingTaken).arg(failure));
}

void TfrmImport::ShowFound(const ImportReport &report)
{
    QStringList lines{FormText(report.form) + (report.name.isEmpty() ? QString() : u": "_s + report.name),
                      CountsText(report)};
    if (!report.licence.isEmpty())
        lines += TextOrEnglish(licence).arg(report.licence);
    ui->lbFound->setText(lines.join(u'\n'));
    ui->lbLeftOut->setText(report.leftOutCount > 0 ? TextOrEnglish(leftOut).arg(QLocale().toString(report.leftOutCount))
                                                   : TextOrEnglish(nothingLeftOut));
    ui->lstLeftOut->clear();
    for (const auto &[place, reason] : report.leftOut)
        ui->lstLeftOut->addItem(place + u": "_s + reason);
    if (report.leftOutCount > report.leftOut.size())
        ui->lstLeftOut->addItem(TextOrEnglish(andMore).arg(report.leftOutCount - report.leftOut.size()));
    ui->lstLeftOut->setVisible(report.leftOutCount > 0);

    ui->cbTarget->clear();
    if (m_job.target == ImportTarget::Canon)
        ui->cbTarget->addItem(TextOrEnglish(canonTarget));
    else
        for (const int kind : DictKind::All)
            ui->cbTarget->addItem(KindText(kind), kind);
    ui->cbTarget->setCurrentIndex(std::max(ui->cbTarget->findData(m_job.kind), 0));
    ui->cbTarget->setEnabled(ui->cbTarget->count() > 1);
    (m_job.target == ImportTarget::Dictionary ? ui->rbBeside : ui->rbInPlace)->setChecked(true);
    GoTo(Step::Found);
}

QString TfrmImport::OpenNew()
{
    try {
        m_openNew(m_job.target);
        return m_isTakingBack ? QString() : TextOrEnglish(isOpen);
    } catch (const std::exception &error) {
        return TextOrEnglish(needsRestart).arg(QString::fromUtf8(error.what()));
    }
}

void TfrmImport::ShowDone(const QString &sentence)
{
    QStringList lines{sentence, OpenNew()};
    const QString before = NameBefore(m_job.File());
    const bool hasBefore = m_before != FileStamp() && QFileInfo::exists(before);
    if (hasBefore)
        lines += TextOrEnglish(m_isTakingBack ? importedStays : oldStays).arg(QDir::toNativeSeparators(before));
    lines.removeAll(QString());
    ui->lbDone->setText(lines.join(u"\n\n"_s));
    ui->btnTakeBack->setVisible(hasBefore && !m_isTakingBack);
    GoTo(Step::Done);
}

void TfrmImport::TakeBack()
{
    m_isTakingBack = true;
    if (m_job.target == ImportTarget::Dictionary)
        return RenameBack({});
    // Marks have gone with texts that have other keys now, and come back by their texts' names: an import like any
    // other.
    m_job.source = NameBefore(m_job.File());
    m_job.replaces = true;
    Run(TextOrEnglish(takingBack));
}

void TfrmImport::RenameBack(const QString &marksFault)
{
    const QString file = m_job.File();
    std::error_code fault;
    std::filesystem::rename(QFileInfo(NameBefore(file)).filesystemFilePath(), QFileInfo(file).filesystemFilePath(),
                            fault);
    m_isTakingBack = !fault; // else the new file stays, and the reader may try again
    if (fault)
        ShowDone(TextOrEnglish(cannotTakeBack).arg(QString::fromStdString(fault.message())));
    else
        ShowDone(marksFault.isEmpty() ? TextOrEnglish(takenBack) : TextOrEnglish(marksStay).arg(marksFault));
}

void TfrmImport::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        RunGuarded([this] { m_run.IsRunning() ? Cancel() : static_cast<void>(close()); });
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // The box's Enter is answered here, too: it comes on from the box, and after a look the focus is at "Cancel".
        auto *button = qobject_cast<QPushButton *>(focusWidget());
        if (button)
            button->click();
        else if (focusWidget() == ui->edSource)
            RunGuarded([this] { Look(ui->edSource->text()); });
    } else
        QWidget::keyPressEvent(event);
}

void TfrmImport::dragEnterEvent(QDragEnterEvent *event)
{
    if (!m_run.IsRunning() && !DroppedPath(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void TfrmImport::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    // The drag's own loop must end first.
    const QString path = DroppedPath(event->mimeData());
    QMetaObject::invokeMethod(this, [this, path] { RunGuarded([&] { Look(path); }); }, Qt::QueuedConnection);
}
