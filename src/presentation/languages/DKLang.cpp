#include "presentation/languages/DKLang.h"

#include "presentation/languages/Components.h"
#include "presentation/languages/MaskList.h"
#include "presentation/languages/Published.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

// String properties that are data or styles, not texts.
const char *const ignoredByDefault[] = {"*.CaptionOptions",
                                        "*.DatabaseName",
                                        "*.DataField",
                                        "*.FieldName",
                                        "*.KeyField",
                                        "*.ParentField",
                                        "*.PropertiesClassName",
                                        "*.RefreshQuery",
                                        "*.RefreshSQL",
                                        "*.SelectQuery",
                                        "*.SelectSQL",
                                        "*.SkinName",
                                        "*.SQL"};

QByteArray FileBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw EDKLangError(QStringLiteral("Cannot open file \"%1\". %2").arg(path, file.errorString()));
    return file.readAll();
}

// Binding clears an entry's name, so bound entries stay, and entries of missing components are dropped only once.
void Bind(TDKLang_CompEntry &entry, QObject *component)
{
    entry.FComponent = component;
    entry.FName.clear();
    auto *const owned = entry.FOwnedCompEntries.get();
    const auto isUnbound = [](const auto &child) { return !child->FName.isEmpty(); };
    if (!owned || std::none_of(owned->begin(), owned->end(), isUnbound))
        return;
    QHash<QString, QObject *> components;
    const QList<QObject *> present = ComponentsOf(*component);
    for (QObject *object : present)
        components.insert(object->objectName(), object);
    for (const auto &child : *owned)
        if (QObject *live = isUnbound(child) ? components.value(child->FName) : nullptr)
            Bind(*child, live);
    std::erase_if(*owned, isUnbound);
    if (owned->empty())
        entry.FOwnedCompEntries.reset();
}

bool HasLetter(const QString &text)
{
    const auto points = text.toUcs4();
    return std::any_of(points.cbegin(), points.cend(), [](uint point) { return QChar::isLetter(point); });
}

/// One update of a controller's table from its live components.
class UpdateWalk
{
public:
    UpdateWalk(const TDKLanguageController &controller, UpdateMode mode, int highest)
        : m_mode(mode), m_options(controller.FOptions), m_ignored(controller.FIgnoreList),
          m_stored(controller.FStoreList), m_highest(highest)
    {}

    void Update(TDKLang_CompEntry &entry)
    {
        if (entry.FComponent) {
            m_path = entry.NamePath() + u'.';
            if (m_mode == UpdateMode::RunTime)
                Capture(entry);
            else
                Renew(entry);
        }
        if (m_mode == UpdateMode::DesignTime && !entry.FOwner)
            RenewComponents(entry);
        if (entry.FOwnedCompEntries)
            for (const auto &owned : *entry.FOwnedCompEntries)
                Update(*owned);
    }

private:
    void Capture(TDKLang_CompEntry &entry)
    {
        if (!entry.FPropEntries)
            return;
        for (auto &property : *entry.FPropEntries) {
            const PublishedText text = FindPublished(entry.FComponent, property.wsPropName, Filter());
            if (const auto value = ValueThatCounts(property.wsPropName, text))
                property.wsDefLangValue = *value;
        }
    }

    void Renew(TDKLang_CompEntry &entry)
    {
        if (!entry.FPropEntries)
            entry.FPropEntries = std::make_unique<TDKLang_PropEntries>();
        auto &properties = *entry.FPropEntries;
        for (auto &property : properties)
            property.bValidated = false;
        WalkPublished(entry.FComponent, Filter(), [&](const QString &name, const PublishedText &text) {
            const auto value = ValueThatCounts(name, text);
            if (!value)
                return;
            auto *property = properties.FindByName(name);
            if (!property)
                property = &properties.Add({++m_highest, false, name, {}});
            property->wsDefLangValue = *value;
            property->bValidated = true;
        });
        properties.RemoveUnvalidated();
        if (properties.IsEmpty())
            entry.FPropEntries.reset();
    }

    static void RenewComponents(TDKLang_CompEntry &root)
    {
        QSet<const QObject *> known;
        if (root.FOwnedCompEntries) {
            std::erase_if(*root.FOwnedCompEntries, [](const auto &owned) { return !owned->FComponent; });
            for (const auto &owned : *root.FOwnedCompEntries)
                known.insert(owned->FComponent);
        }
        const QList<QObject *> present = ComponentsOf(*root.FComponent);
        for (QObject *component : present)
            if (!known.contains(component))
                Bind(root.AddOwned(component->objectName()), component);
    }

    PublishedFilter Filter() const
    {
        return [this](const QString &name, const QObject *object) {
            const bool isFont = object && object->inherits("TFont") && m_options.testFlag(dklcoIgnoreFontProps);
            return !isFont && !m_ignored.Matches(m_path + name);
        };
    }

    std::optional<QString> ValueThatCounts(const QString &name, const PublishedText &text) const
    {
        if (!text.IsValid() || (!text.IsStored() && !m_stored.Matches(m_path + name)))
            return {};
        QString value = text.Read();
        if (m_options.testFlag(dklcoIgnoreNonAlphaProps) ? !HasLetter(value)
                                                         : m_options.testFlag(dklcoIgnoreEmptyProps) && value.isEmpty())
            return {};
        return value;
    }

    const UpdateMode m_mode;
    const ControllerOptions m_options;
    const TDKLang_MaskList m_ignored, m_stored;
    int m_highest;
    QString m_path; // of the component at hand, "." included
};

void Apply(TDKLang_CompEntry &entry, const TDKLang_CompTranslation *section)
{
    if (entry.FPropEntries && entry.FComponent) {
        for (const auto &property : *entry.FPropEntries) {
            const auto *translated = section ? section->Find(property.iID) : nullptr;
            FindPublished(entry.FComponent, property.wsPropName)
                .Write(translated ? translated->wsValue : property.wsDefLangValue);
        }
    }
    if (entry.FOwnedCompEntries)
        for (const auto &owned : *entry.FOwnedCompEntries)
            Apply(*owned, section);
}

} // namespace

TDKLanguageController::TDKLanguageController(QObject *owner, const QByteArray &langData, TDKLanguageManager *manager)
    : QObject(owner),
      FRootCompEntry(langData.isEmpty() ? std::make_unique<TDKLang_CompEntry>() : LoadLangData(langData)),
      m_manager(manager)
{
    setObjectName(QStringLiteral("dkLang"));
    for (const char *mask : ignoredByDefault)
        FIgnoreList.append(QString::fromLatin1(mask));
    FIgnoreList.sort(Qt::CaseInsensitive);
    if (!m_manager && QCoreApplication::instance())
        m_manager = &LangManager();
    if (m_manager)
        m_manager->AddController(this);
}

TDKLanguageController::TDKLanguageController(QObject *owner, const QString &langDataPath, TDKLanguageManager *manager)
    : TDKLanguageController(owner, FileBytes(langDataPath), manager)
{}

TDKLanguageController::~TDKLanguageController()
{
    if (m_manager)
        m_manager->RemoveController(this);
}

void TDKLanguageController::Loaded()
{
    UpdateEntries(UpdateMode::RunTime);
    if (m_manager && m_manager->CurrentLanguage() != m_manager->DefaultLanguage())
        m_manager->TranslateController(*this);
}

QString TDKLanguageController::SectionName() const
{
    return FSectionName.isEmpty() && parent() ? parent()->objectName() : FSectionName;
}

void TDKLanguageController::UpdateEntries(UpdateMode mode, int highestEverUsed)
{
    if (!parent())
        return;
    // Determined before anything is dropped, so that no number is given twice.
    const int highest = std::max(highestEverUsed, FRootCompEntry->HighestId());
    Bind(*FRootCompEntry, parent());
    UpdateWalk(*this, mode, highest).Update(*FRootCompEntry);
}

void TDKLanguageController::ApplyTranslation(const TDKLang_CompTranslation *section)
{
    Apply(*FRootCompEntry, section);
}
