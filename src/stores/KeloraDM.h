#pragma once

#include "base/Colour.h"
#include "stores/engine/Database.h"
#include "stores/examination/ExaminedFiles.h"
#include "stores/settings/Options.h"
#include "stores/settings/Registry.h"

#include <QDateTime>
#include <QObject>
#include <QVariant>

#include <functional>
#include <map>
#include <memory>

/// Functions that the modules need from the program. The window layer sets them; tests replace them.
struct ModuleDoors
{
    /// Full path of the running executable (Application.ExeName).
    QString exeName;
    /// Shows a box with one OK button and no title; "\r" separates lines.
    std::function<void(const QString &text)> showMessage;
    /// Asks the program to end; the caller goes on.
    std::function<void()> terminate;
    /// Asks before a row is deleted; throws SilentAbort if the reader declines. If unset, nothing is asked.
    std::function<void()> confirmDelete;
    /// How a database file may be opened; waits until that is known. If unset, as it is.
    std::function<Verdict(const QString &file)> verdictOn;
    /// The current time.
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
    /// A new registry object for each use.
    std::function<std::unique_ptr<TRegistry>()> createRegistry = CreateSystemRegistry;
};

/// Full path of Firebird's client library beside the executable in `folder` (with trailing separator).
QString ClientLibraryPath(const QString &folder);

/// Folder of the executable with one trailing separator.
QString FolderOfExecutable(const QString &exeName);

/// Prepares the connection of any of the three modules: closes the database if it is open, then sets file, login,
/// character set, client library and transaction. Opens nothing.
void PrepareConnection(TpFIBDatabase &database, TpFIBTransaction &transaction, const QString &file,
                       const QString &exeName);

/// Connects the prepared database as the verdict on its file says, and starts the transaction. Throws DatabaseError.
void Connect(TpFIBDatabase &database, TpFIBTransaction &transaction, const ModuleDoors &doors);

/// Enough to keep an ordinary canon in memory from one search to the next. The other files are read sparsely, and
/// Firebird's default suffices.
inline constexpr int CanonCachePages = 2048;

/// The canon's connection and the reader's options. Exists for the whole run.
class TfrmKeloraDM : public QObject
{
    Q_OBJECT
public:
    explicit TfrmKeloraDM(ModuleDoors doors, QObject *owner = nullptr);

    /// Connects to KELORA.FDB beside the executable and reads the options. On any failure shows the fixed message, asks
    /// the program to end and returns normally. Sets AppPath. Called once by the start, after construction.
    void DataModuleCreate();
    /// Connects to the file that bears the canon's name now, in place of the one that was open; datasets must be
    /// closed. Throws DatabaseError.
    void Open();
    /// Fills the fields and globals from the settings: all zero without the key, all defaults if one integer value is
    /// missing or of another type, else the stored values.
    void ReadSystemOptions();
    /// Fills the two style globals from the settings. Without the key they stay; if a value is missing they get the
    /// default style.
    void ReadActiveStyle();
    /// Stores the two style globals, or if that fails, the fallback style. Throws RegistryError if that fails, too.
    void WirteActiveStyle();
    /// Does nothing: there are no favourites.
    void LoadFavouriteSuttas() {}

    /// Writes one value of any type. Type 0 (Unknown) takes the type of the existing value. Throws RegistryError.
    void SetRegistryData(RegistryRoot root, const QString &path, const QVariant &value, RegistryType type,
                         const QString &name);
    /// Reads one value of any type: QString, int or QByteArray. Throws RegistryError.
    QVariant GetRegistryData(RegistryRoot root, const QString &path, const QString &name);
    /// A new registry object, for reading or writing several values.
    std::unique_ptr<TRegistry> CreateRegistry() const { return m_doors.createRegistry(); }
    /// Full path of the running executable.
    const QString &ExeName() const { return m_doors.exeName; }
    /// Writes one value of the options key, which is created if necessary. If the key can't be opened, silently stores
    /// nothing.
    void WriteOption(Option option, const OptionValue &value);
    /// True while Velthuis letters are to become Pāli ones where Pāli is typed.
    bool TypesPali() const { return Get<bool>(vOurOptions, Option::PaliTyping); }
    /// The letter in which the open canon writes the niggahita, by its first texts in a column of KELORA_CONTENT; ṃ if
    /// they have none or can't be read. What was found is kept until another canon is opened.
    QChar Niggahita(const QString &column);

    TpFIBDatabase dbKelora;
    TpFIBTransaction trKelora;

    Colour vBgColor = 0;
    Colour vHighlightColor = 0;
    int vOpenSutta = 0;
    bool vPopupActive = false;
    int vPopupTime = 0;
    int vLastKelora = 0;
    int vLanguageSutta = 0;
    int vMarginWidth = 0;
    bool vStartWin = false;
    bool vIsFirstStart = false;                               ///< nothing was stored yet
    OptionValues vOurOptions = DefaultsOf(OptionGroup::Ours); ///< each as stored or by default

private:
    void TakeStartOptions(const OptionValues &values);
    template <typename Write>
    void WithOptionsKey(Write write);

    ModuleDoors m_doors;
    std::map<QString, QChar> m_niggahitas; ///< by column
};
