#include "reader/Main.h"

#include "base/Messages.h"
#include "dictionary/DictionaryDM.h"
#include "imports/Import.h"
#include "presentation/Welcome.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/engine/DatabaseError.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QFileSystemWatcher>

using namespace Qt::StringLiterals;

namespace {

constexpr Message newCanon{u"Có bản mới của kho kinh sách.", u"There is a newer canon."};
constexpr Message newDictionary{u"Có bản mới của từ điển.", u"There is a newer dictionary."};
constexpr Message openIt{u"Mở", u"Open it"};
constexpr Message cannotOpen{u"Không mở được từ điển mới.", u"The new dictionary can't be opened."};

QString FileOf(ImportTarget target)
{
    return AppPath + (target == ImportTarget::Canon ? DatabaseFile::Canon : DatabaseFile::Dictionary);
}

} // namespace

void TfrmMain::SetUpImports()
{
    setAcceptDrops(true);
    m_watcher = new QFileSystemWatcher(this);
    for (const ImportTarget target : {ImportTarget::Canon, ImportTarget::Dictionary})
        WatchFile(target);
    ConnectGuarded(m_watcher, &QFileSystemWatcher::fileChanged, this, [this] {
        for (const ImportTarget target : {ImportTarget::Canon, ImportTarget::Dictionary})
            TellOfNewFile(target);
    });
}

void TfrmMain::WatchFile(ImportTarget target)
{
    const QString file = FileOf(target);
    m_openFiles[target] = FileStamp::Of(file);
    m_watcher->removePath(file);
    m_watcher->addPath(file);
}

void TfrmMain::TellOfNewFile(ImportTarget target)
{
    const QString file = FileOf(target);
    const FileStamp present = FileStamp::Of(file);
    if (present == FileStamp() || present.IsSameFile(m_openFiles[target]))
        return;
    m_watcher->addPath(file); // another file has the name now
    TellInFoot(TextOrEnglish(target == ImportTarget::Canon ? newCanon : newDictionary), TextOrEnglish(openIt),
               [this, target] { OpenNewFile(target); });
}

void TfrmMain::OpenNewFile(ImportTarget target)
{
    TellInFoot({});
    if (target == ImportTarget::Canon)
        OpenNewCanon();
    else
        OpenNewDictionary();
    WatchFile(target);
}

void TfrmMain::OpenNewCanon()
{
    for (const QString &name : {u"frmSearchSutas"_s, u"frmFindEverywhere"_s})
        if (QWidget *search = FindForm(name))
            search->close();
    const int shown = qryTreeSutas.Active() ? qryTreeSutas.FieldByName(Field::IdVic).AsInteger() : 0;
    qryKeloraContent.Close();
    qryTreeSutas.Close();
    frmKeloraDM->Open();
    m_texts.clear();
    LoadContentData();
    OpenText(shown);
}

void TfrmMain::OpenNewDictionary()
{
    if (QWidget *dictionary = FindForm(u"frmDictionary"_s))
        dictionary->close();
    frmDictionaryDM->DataModuleCreate();
    if (!frmDictionaryDM->vIsOKDictionary)
        throw DatabaseError(TextOrEnglish(cannotOpen));
}

TfrmImport &TfrmMain::OpenImports()
{
    QWidget *form = OpenForm(u"frmImport"_s,
                             [this] { return new TfrmImport([this](ImportTarget target) { OpenNewFile(target); }); });
    form->raise();
    form->activateWindow();
    return static_cast<TfrmImport &>(*form);
}

void TfrmMain::OpenWelcome(bool takesFocus)
{
    QWidget *form = OpenForm(u"frmWelcome"_s, [&] {
        auto *welcome = new TfrmWelcome([this] { OpenImports(); }, [this] { acHelpExecute(); });
        welcome->setAttribute(Qt::WA_ShowWithoutActivating, !takesFocus);
        welcome->move(frameGeometry().center() - welcome->rect().center());
        return welcome;
    });
    if (takesFocus)
        form->activateWindow();
}

void TfrmMain::dragEnterEvent(QDragEnterEvent *event)
{
    if (!DroppedPath(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void TfrmMain::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    // The drag's own loop must end first.
    const QString path = DroppedPath(event->mimeData());
    QMetaObject::invokeMethod(
        this, [this, path] { RunGuarded([&] { OpenImports().Look(path); }); }, Qt::QueuedConnection);
}
