#pragma once

#include "dictionary/DictionaryDM.h"
#include "presentation/GlobalUnit.h"
#include "reader/Main.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"
#include "stores/SettingsDisk.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"
#include "support/WaitFor.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxButton.h"
#include "toolkit/DBTreeList.h"
#include "toolkit/Doors.h"
#include "toolkit/Forms.h"

#include <QAction>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gmock/gmock.h>

#include <functional>
#include <memory>

/// Makes a database by a script for a program of that path.
void MakeDatabase(const QString &path, const QString &program, const char *script);

/// The real window on a small canon of the real engine, with settings of its own and stand-ins for the doors. The boxes
/// asked for are answered from a queue and recorded: none may be left at a test's end that CheckBoxes() has not seen.
class ReaderWindow : public testing::Test
{
protected:
    ReaderWindow();
    ~ReaderWindow() override;
    void TearDown() override { CheckBoxes({}); }

    struct Box
    {
        QString title, text;
        bool operator==(const Box &) const = default;
    };

    /// Makes canon module and window, as the start does. What is stored before counts.
    void Start();
    /// Ends window and modules, so that another run can start on the same settings.
    void End();
    /// A complete set of stored options; a start with them on a text.
    void StoreDefaults(int openSutta = 0, int lastKelora = 0, int languageSutta = 1, int interfaceLang = 0);
    void StartOn(int idVic = 1101, int languageSutta = 1, int interfaceLang = 0);
    void Store(const QString &name, const QVariant &value);
    /// Puts a language file beside the program until the test's end; the same with the product's own English.
    void AddLanguage(const QString &fileName, const QByteArray &content);
    void AddEnglish();
    /// Puts a skin file beside the program until the test's end; without one the file holds no skin.
    void SetSkins(const QByteArray &content) { EXPECT_TRUE(WriteBytes(skinFile, content)); }
    /// The stored value; invalid if there is none.
    QVariant Stored(const QString &name);

    /// The named object of a window; the test fails with the name when it is missing.
    template <typename T>
    static T &In(QWidget &window, const char *name)
    {
        T *found = window.findChild<T *>(QLatin1StringView(name));
        if (!found)
            throw std::runtime_error(std::string("no ") + name);
        return *found;
    }
    /// The same in the main window.
    template <typename T>
    T &Find(const char *name)
    {
        return In<T>(*window, name);
    }
    QAction &Action(const char *name) { return Find<QAction>(name); }
    /// Runs a command, which has to be enabled; presses a button.
    void Trigger(const char *name)
    {
        EXPECT_TRUE(Action(name).isEnabled()) << name;
        Action(name).trigger();
    }
    void Click(const char *button) { Find<TcxButton>(button).click(); }
    TDBTreeList &Tree() { return Find<TDBTreeList>("dbtSutas"); }
    TBrowserControl &Browser() { return Find<TBrowserControl>("ebContent"); }
    /// Gives the window the focus.
    void Activate();
    /// Moves the tree to a text.
    void GoTo(int idVic) { EXPECT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), idVic)); }
    /// The row under the cursor: its number, its name in Vietnamese.
    int CurrentId() { return window->qryTreeSutas.FieldByName(QStringLiteral("ID_VIC")).AsInteger(); }
    QString CurrentName() { return window->qryTreeSutas.FieldByName(QStringLiteral("NAME_VIC_VIE")).AsString(); }
    /// A file beside the program.
    QString Beside(const QString &name) const { return QFileInfo(program).path() + u'/' + name; }
    /// Names of the tree's passages, in the dataset's order.
    QStringList PassageNames();
    /// Types into the focused widget, key by key, releases included.
    void Type(QWidget &widget, const QString &text);
    bool WaitPage()
    {
        return WaitFor([this] { return Browser().IsComplete(); }, 15000);
    }
    std::string Page() { return Browser().Source().toStdString(); }
    /// The page's texts on a ground of search hits, parted by "|".
    QString Coloured(const char *ground = "rgb(255, 255, 0)");
    /// Compares the boxes so far with what is expected, and forgets them.
    void CheckBoxes(const QList<Box> &expected);
    /// The text of the one box so far, which is forgotten.
    std::string TakeBox();
    /// Runs a command that opens a modal window of a kind, and `inside` once that is active; what that leaves open is
    /// closed. The window is gone then.
    template <typename Dialog>
    void RunModal(const char *command, const std::function<void(Dialog &)> &inside)
    {
        bool wasOpen = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            const QPointer<Dialog> dialog = window->findChild<Dialog *>();
            if (!dialog || !dialog->isVisible())
                return;
            poll.stop();
            wasOpen = true;
            dialog->activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
            EXPECT_TRUE(dialog->isModal());
            inside(*dialog);
            if (dialog && dialog->isVisible())
                dialog->close();
        });
        poll.start(10);
        Trigger(command);
        EXPECT_TRUE(wasOpen);
        EXPECT_FALSE(window->findChild<Dialog *>()) << "it is freed";
    }

    ScratchFolder settings;
    SettingsDisk *disk = &RealSettingsDisk(); ///< that the settings are on
    QString program, skinFile; ///< paths of the executable that stands beside the canon, and of its skins
    QList<bool> answers;
    QList<Box> boxes;
    QStringList opened; ///< addresses handed to the system
    quint32 drawn = 0;

    std::unique_ptr<TfrmKeloraDM> kelora;
    std::unique_ptr<TfrmClientsDM> clients;
    std::unique_ptr<TfrmDictionaryDM> dictionary;
    std::unique_ptr<TfrmMain> window;

private:
    ModuleDoors Modules();
    QStringList m_languageFiles;
    PlatformDoors m_realDoors;
};
