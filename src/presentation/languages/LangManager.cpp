#include "presentation/languages/DKLang.h"
#include "presentation/languages/Locales.h"
#include "presentation/languages/MaskList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

QString ResourcePath(const TDKLang_LangResource &resource)
{
    switch (resource.Kind) {
    case dklrkResName:
        return resource.Instance + u'/' + resource.wsName;
    case dklrkResID:
        return resource.Instance + u'/' + QString::number(resource.iResID);
    case dklrkFile:
        return resource.wsName;
    case dklrkStream:
        break;
    }
    return {};
}

TDKLang_CompTranslations Load(const TDKLang_LangResource &resource, bool paramsOnly)
{
    TDKLang_CompTranslations translations;
    if (resource.Kind != dklrkStream) {
        translations.LoadFromFile(ResourcePath(resource), paramsOnly);
        return translations;
    }
    if (!resource.Stream || !resource.Stream->seek(0))
        throw EDKLangError(QStringLiteral("A language's stream can't be read"));
    translations.LoadFromBytes(resource.Stream->readAll(), paramsOnly);
    return translations;
}

} // namespace

TDKLanguageManager::TDKLanguageManager()
{
    QFile constants(QStringLiteral(":/DKLANG_CONSTS"));
    if (constants.open(QIODevice::ReadOnly))
        m_constants.LoadFromBytes(constants.readAll());
    TranslateAll(nullptr);
}

TDKLanguageManager::~TDKLanguageManager()
{
    for (TDKLanguageController *controller : std::as_const(m_controllers))
        controller->m_manager = nullptr;
}

void TDKLanguageManager::ForgetLanguages()
{
    const QWriteLocker lock(&m_lock);
    m_resources.clear();
    m_defaultLanguage = m_currentLanguage = FirstLanguage;
}

void TDKLanguageManager::SetDefaultLanguage(quint16 id)
{
    const QWriteLocker lock(&m_lock);
    if (m_currentLanguage == m_defaultLanguage)
        m_currentLanguage = id;
    m_defaultLanguage = id;
}

quint16 TDKLanguageManager::DefaultLanguage() const
{
    const QReadLocker lock(&m_lock);
    return m_defaultLanguage;
}

quint16 TDKLanguageManager::CurrentLanguage() const
{
    const QReadLocker lock(&m_lock);
    return m_currentLanguage;
}

int TDKLanguageManager::ScanLanguageFiles(const QString &folder, const QString &mask, bool recursive)
{
    const TDKLang_MaskList masks({mask});
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QFileInfoList entries = QDir(folder).entryInfoList(everything, QDir::NoSort);
    // The file system's own order differs from machine to machine, and the settings keep a language's index.
    std::sort(entries.begin(), entries.end(), [](const QFileInfo &a, const QFileInfo &b) {
        const int order = a.fileName().compare(b.fileName(), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.fileName() < b.fileName();
    });
    int count = 0;
    for (const QFileInfo &entry : std::as_const(entries)) {
        if (!masks.Matches(entry.fileName()))
            continue;
        if (!entry.isDir())
            count += AddLanguageFile(entry.filePath()) ? 1 : 0;
        else if (recursive && !entry.fileName().startsWith(u'.') && !entry.isSymLink())
            count += ScanLanguageFiles(entry.filePath(), mask, true);
    }
    return count;
}

bool TDKLanguageManager::AddLanguageFile(const QString &path)
{
    // Reading a pipe or a device may block for ever.
    if (!QFileInfo(path).isFile())
        return false;
    TDKLang_LangResource file;
    file.wsName = path;
    return AddLanguageResource(std::move(file));
}

bool TDKLanguageManager::AddLanguageResource(TDKLang_LangResource resource)
{
    try {
        resource.wLangID = Load(resource, true).LangId();
    } catch (const EDKLangError &) {
        return false; // an unreadable file has no LANGID, and must not prevent others from being found
    }
    if (resource.wLangID == 0)
        return false;
    const QWriteLocker lock(&m_lock);
    if (resource.wLangID == m_defaultLanguage)
        return true;
    const auto known = std::find_if(m_resources.begin(), m_resources.end(),
                                    [&resource](const auto &r) { return r.wLangID == resource.wLangID; });
    if (known != m_resources.end())
        *known = std::move(resource);
    else
        m_resources.append(std::move(resource));
    return true;
}

int TDKLanguageManager::GetLanguageCount() const
{
    const QReadLocker lock(&m_lock);
    return int(m_resources.size()) + 1;
}

quint16 TDKLanguageManager::GetLanguageId(int index) const
{
    const QReadLocker lock(&m_lock);
    if (index < 0 || index > m_resources.size())
        throw EDKLangError(QStringLiteral("Language index out of bounds (%1)").arg(index));
    return index == 0 ? m_defaultLanguage : m_resources[index - 1].wLangID;
}

QString TDKLanguageManager::GetLanguageName(int index) const
{
    const quint16 id = GetLanguageId(index);
    const LocaleRow *row = FindLocale(id);
    return row ? QString::fromUtf8(row->shortName) : QString::number(id);
}

void TDKLanguageManager::SetCurrentLanguage(quint16 id)
{
    const auto resource = FindResource(id);
    const quint16 target = resource ? id : DefaultLanguage();
    if (target == CurrentLanguage())
        return;
    std::optional<TDKLang_CompTranslations> translations;
    if (resource)
        translations = Load(*resource, false);
    {
        const QWriteLocker lock(&m_lock);
        m_currentLanguage = target;
    }
    TranslateAll(translations ? &*translations : nullptr);
}

void TDKLanguageManager::TranslateAll(const TDKLang_CompTranslations *translations)
{
    QList<QPointer<TDKLanguageController>> controllers;
    {
        const QWriteLocker lock(&m_lock);
        m_constants.Translate(translations ? &translations->FConstants : nullptr);
        for (TDKLanguageController *controller : std::as_const(m_controllers))
            controllers.append(controller);
    }
    for (const auto &controller : std::as_const(controllers))
        if (controller)
            TranslateOne(translations, *controller);
}

void TDKLanguageManager::TranslateController(TDKLanguageController &controller)
{
    const auto resource = FindResource(CurrentLanguage());
    if (!resource) {
        TranslateOne(nullptr, controller);
        return;
    }
    const TDKLang_CompTranslations translations = Load(*resource, false);
    TranslateOne(&translations, controller);
}

void TDKLanguageManager::TranslateOne(const TDKLang_CompTranslations *translations, TDKLanguageController &controller)
{
    if (controller.FOnLanguageChanging)
        controller.FOnLanguageChanging();
    controller.ApplyTranslation(translations ? translations->FindSection(controller.SectionName()) : nullptr);
    if (controller.FOnLanguageChanged)
        controller.FOnLanguageChanged();
}

void TDKLanguageManager::AddController(TDKLanguageController *controller)
{
    const QWriteLocker lock(&m_lock);
    m_controllers.append(controller);
}

void TDKLanguageManager::RemoveController(TDKLanguageController *controller)
{
    const QWriteLocker lock(&m_lock);
    m_controllers.removeOne(controller);
}

/// The source of a language; none for the default language and for an unknown one.
std::optional<TDKLang_LangResource> TDKLanguageManager::FindResource(quint16 id) const
{
    const QReadLocker lock(&m_lock);
    const auto found =
        std::find_if(m_resources.cbegin(), m_resources.cend(), [id](const auto &r) { return r.wLangID == id; });
    if (id == m_defaultLanguage || found == m_resources.cend())
        return {};
    return *found;
}

TDKLanguageManager &LangManager()
{
    if (!QCoreApplication::instance())
        throw EDKLangError(QStringLiteral("Call to LangManager() is allowed at runtime only"));
    // Windows may outlive the statics of other files, so it is never freed.
    static auto *const manager = new TDKLanguageManager;
    return *manager;
}
