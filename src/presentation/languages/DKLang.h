#pragma once

#include "presentation/languages/LangData.h"
#include "presentation/languages/LangError.h"
#include "presentation/languages/Translations.h"

#include <QFlags>
#include <QIODevice>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QReadWriteLock>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class TDKLanguageManager;

enum ControllerOption {
    dklcoAutoSaveLangSource = 1,
    dklcoIgnoreEmptyProps = 2,
    dklcoIgnoreNonAlphaProps = 4,
    dklcoIgnoreFontProps = 8
};
Q_DECLARE_FLAGS(ControllerOptions, ControllerOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(ControllerOptions)

/// RunTime captures values only. DesignTime also adds and removes entries and gives new numbers.
enum class UpdateMode { RunTime, DesignTime };

/// Connects one window to its table of numbered texts. A child of the window, named "dkLang". Main thread only.
class TDKLanguageController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList IgnoreList MEMBER FIgnoreList)
    Q_PROPERTY(QStringList StoreList MEMBER FStoreList)

public:
    /// Reads the table and registers with `manager`, or, if it is null, with LangManager() where an application
    /// exists. Empty bytes make an empty table. Throws EDKLangError for a damaged one. `owner` is the window.
    explicit TDKLanguageController(QObject *owner, const QByteArray &langData = {},
                                   TDKLanguageManager *manager = nullptr);
    /// The same with a table from a file or resource, such as ":/langdata/frmMain".
    TDKLanguageController(QObject *owner, const QString &langDataPath, TDKLanguageManager *manager = nullptr);
    ~TDKLanguageController() override;

    QStringList FIgnoreList; ///< masks of properties never to touch, sorted
    QStringList FStoreList;  ///< masks of properties to take although not stored
    ControllerOptions FOptions = ControllerOptions(dklcoAutoSaveLangSource) | dklcoIgnoreEmptyProps |
                                 dklcoIgnoreNonAlphaProps | dklcoIgnoreFontProps;
    QString FSectionName; ///< empty: the owner's name
    std::function<void()> FOnLanguageChanging, FOnLanguageChanged;

    /// Binds the table to the window's components, captures their values as those of the default language, and applies
    /// the current language if it is another. A second call captures again, whatever language is on show.
    /// Throws EDKLangError if the current language can't be loaded.
    void Loaded();
    /// The section of the language files that is the window's.
    QString SectionName() const;
    TDKLang_CompEntry &RootEntry() { return *FRootCompEntry; }

    /// Binds the table and updates it from the existing components. DesignTime also removes entries of missing
    /// components and gives new texts the numbers after the highest of the table and of `highestEverUsed`.
    void UpdateEntries(UpdateMode mode, int highestEverUsed = 0);
    /// Gives every numbered property its value of `section`; its default if there is none, or if `section` is null.
    void ApplyTranslation(const TDKLang_CompTranslation *section);

private:
    friend class TDKLanguageManager;

    std::unique_ptr<TDKLang_CompEntry> FRootCompEntry;
    TDKLanguageManager *m_manager = nullptr;
};

enum LangResourceKind { dklrkResName, dklrkResID, dklrkFile, dklrkStream };

/// The source of one language.
struct TDKLang_LangResource
{
    LangResourceKind Kind = dklrkFile;
    QString Instance;                  ///< root of a module's resources, such as ":/languages"
    std::shared_ptr<QIODevice> Stream; ///< open and seekable
    QString wsName;                    ///< file path, or name of a resource below Instance
    int iResID = 0;                    ///< name of a resource as a number
    quint16 wLangID = 0;
};

/// The known languages, the controllers and the current language. One lock guards its lists and ids; it is released
/// while texts are applied, so that a handler may create windows or switch again.
class TDKLanguageManager
{
public:
    TDKLanguageManager();
    ~TDKLanguageManager();
    Q_DISABLE_COPY(TDKLanguageManager)

    /// Forgets the registered languages, and stands on 1033 as at first. What the windows show stays.
    void ForgetLanguages();
    /// Says what language the windows are designed in, 1033 at first. While the designed texts are on show, which they
    /// are before any switch, the current language goes with it.
    void SetDefaultLanguage(quint16 id);
    quint16 DefaultLanguage() const;
    quint16 CurrentLanguage() const;

    /// Registers the files of a folder whose names match the mask, in the order of their names, hidden ones too;
    /// `recursive` enters folders that match it and don't begin with ".". Returns how many files are languages.
    int ScanLanguageFiles(const QString &folder, const QString &mask, bool recursive);
    /// Registers one file by its parameter LANGID. A language that is known keeps its place and takes the new file.
    /// False if there is no such file or no LANGID in it; true, and nothing changes, for the default language.
    bool AddLanguageFile(const QString &path);
    /// The same for a text from elsewhere; wLangID is taken from it.
    bool AddLanguageResource(TDKLang_LangResource resource);

    /// The registered languages and the default one, which is index 0.
    int GetLanguageCount() const;
    /// Throws EDKLangError for an index out of range, as does the next.
    quint16 GetLanguageId(int index) const;
    /// The short English name, or the number where the id is unknown.
    QString GetLanguageName(int index) const;

    /// Switches all controllers; an id that is not known means the default language. Does nothing if it is current.
    /// Throws EDKLangError if the language can't be loaded; nothing has changed then.
    void SetCurrentLanguage(quint16 id);
    /// Applies translations, or with null the default texts, to the constants and to all controllers in order.
    void TranslateAll(const TDKLang_CompTranslations *translations);
    /// Reads the current language and applies it to one controller.
    void TranslateController(TDKLanguageController &controller);
    /// Applies translations to one controller, between its two events.
    static void TranslateOne(const TDKLang_CompTranslations *translations, TDKLanguageController &controller);

    const TDKLang_Constants &Constants() const { return m_constants; }

private:
    friend class TDKLanguageController;
    void AddController(TDKLanguageController *controller);
    void RemoveController(TDKLanguageController *controller);
    std::optional<TDKLang_LangResource> FindResource(quint16 id) const;

    mutable QReadWriteLock m_lock;
    QList<TDKLanguageController *> m_controllers;
    QList<TDKLang_LangResource> m_resources;
    static constexpr quint16 FirstLanguage = 1033;
    quint16 m_defaultLanguage = FirstLanguage;
    quint16 m_currentLanguage = FirstLanguage;
    TDKLang_Constants m_constants;
};

/// The program's manager, made at the first call and never freed.
/// Throws EDKLangError where no application object exists, as in a tool that builds windows without running them.
TDKLanguageManager &LangManager();
