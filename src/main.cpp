#include "reader/Main.h"
#include "base/Utf8Locale.h"
#include "dictionary/DictionaryDM.h"
#include "marks/ConfirmDelete.h"
#include "presentation/DMInterface.h"
#include "presentation/DatabaseWait.h"
#include "presentation/ProductAddresses.h"
#include "stores/ClientsDM.h"
#include "stores/DailyBackup.h"
#include "stores/FileScout.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/MenuKey.h"
#include "toolkit/program/QtWords.h"
#include "toolkit/program/StartUp.h"

#include <QApplication>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

constexpr int CanonFailed = 1;

QString Title()
{
    return QStringLiteral("Lumivara 1.0");
}

/// The databases, in the order in which the modules connect.
QStringList DatabaseFiles()
{
    const QString folder = FolderOfExecutable(QCoreApplication::applicationFilePath());
    return {folder + DatabaseFile::Canon, folder + DatabaseFile::Marks, folder + DatabaseFile::Dictionary};
}

/// True to go on waiting. Nothing is open yet that would have to be closed.
bool WaitOrLeave(const QString &file, QIODevice &answers)
{
    if (!WaitForDatabase(file, answers))
        std::quick_exit(CanonFailed);
    return true;
}

ModuleDoors RealDoors(FileScout &scout)
{
    ModuleDoors doors;
    doors.exeName = QCoreApplication::applicationFilePath();
    doors.showMessage = [](const QString &text) { Doors().messageBox(Title(), text, BoxButtons::Ok, BoxIcon::None); };
    doors.confirmDelete = ConfirmDelete;
    doors.terminate = [] { TerminateApplication(CanonFailed); };
    doors.verdictOn = [&scout](const QString &file) {
        return scout.VerdictOn(file, [&file](QIODevice &answers) { return WaitOrLeave(file, answers); });
    };
    return doors;
}

/// Nobody is left to be told of a failure, and nothing is lost: each post has committed itself.
void Leave(TpFIBDatabase &database)
{
    try {
        database.SetConnected(false);
        FileScout::RememberLeft(database);
    } catch (const std::exception &) {
    }
}

} // namespace

int main(int argc, char **argv)
{
    PrepareProcess();
    RegisterPageScheme();
    // The program takes no arguments; Qt and Chromium would interpret some.
    int programName = std::min(argc, 1);
    QApplication application(programName, argv);
    FileScout scout(FolderOfExecutable(QCoreApplication::applicationFilePath()) + QStringLiteral("lumivara-data"),
                    DatabaseFiles());
    TpFIBDatabase::SetLockFolder(FolderOfExecutable(QCoreApplication::applicationFilePath()) + QStringLiteral("lock"));
    SettleLocale();
    QApplication::setApplicationName(Title());
    QApplication::setDesktopFileName(QString::fromUtf16(DesktopEntry));
    QApplication::setQuitOnLastWindowClosed(false);
    InstallFontSubstitutes();
    InstallMenuKey();
    ShowQtWords();

    // Each is complete before the next; they are destroyed in reverse order, the window's pages first.
    TInterfaceDM interfaceModule;
    InterfaceDM = &interfaceModule;
    interfaceModule.DataModuleCreate();
    TfrmKeloraDM kelora(RealDoors(scout));
    frmKeloraDM = &kelora;
    kelora.DataModuleCreate();
    TfrmClientsDM clients(RealDoors(scout));
    frmClientsDM = &clients;
    clients.DataModuleCreate();
    TfrmDictionaryDM dictionary(RealDoors(scout));
    frmDictionaryDM = &dictionary;
    dictionary.DataModuleCreate();
    auto mainWindow = std::make_unique<TfrmMain>();
    // Queued, so that the window is on the screen before another process competes for the machine.
    if (clients.vIsOKClients) {
        const auto save = [] { StartDailyBackup(QCoreApplication::applicationFilePath()); };
        QMetaObject::invokeMethod(&application, save, Qt::QueuedConnection);
    }

    const int exitCode = RunApplication();
    mainWindow.reset();
    for (TpFIBDatabase *database : {&kelora.dbKelora, &clients.dbClientTarune, &dictionary.dbDictionary})
        Leave(*database);
    return exitCode;
}
