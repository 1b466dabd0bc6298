#include "lumivara-lang/WindowTables.h"

#include "common/Tool.h"
#include "lumivara-lang/UiFile.h"
#include "presentation/languages/DKLang.h"
#include "presentation/languages/Published.h"

#include <QDirIterator>
#include <QObject>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What the engine sees of a window while it is designed: an object for each component, flat, with the stored texts as
/// properties under their published names.
struct StandIn
{
    QObject window;
    QSet<QString> meantForReaders;

    explicit StandIn(const UiWindow &description)
    {
        for (const UiComponent &component : description.components) {
            QObject *object = &component == &description.components.first() ? &window : new QObject(&window);
            object->setObjectName(component.name);
            for (const UiText &text : component.texts)
                SetText(*object, component, text);
        }
    }

private:
    void SetText(QObject &object, const UiComponent &component, const UiText &text)
    {
        const QString name = PublishedNameOf(component, text);
        if (name.isEmpty())
            return;
        object.setProperty(name.toUtf8().constData(),
                           text.isList ? QVariant(text.lines) : QVariant(text.lines.value(0)));
        // A caption that only repeats the component's name is the designer's, not written for a reader.
        if (text.isMeantForReaders && text.lines != QStringList{component.name})
            meantForReaders.insert(component.name + u'.' + name);
    }

    static QString PublishedNameOf(const UiComponent &component, const UiText &text)
    {
        // A description writes keys as texts, but no component takes them as texts.
        static const QSet<QByteArray> keys{"shortcut", "keySequence"};
        if (keys.contains(text.property))
            return {};
        if (text.property == "items" && text.isList)
            return u"Properties.Items"_s;
        return PublishedName(component.classChain, text.property);
    }
};

/// The table as far as numbers have been given out, in the order of the description.
QByteArray TableOf(const UiWindow &description, const QHash<QString, int> &numbers)
{
    TDKLang_CompEntry root;
    root.FName = description.Name();
    QHash<QString, TDKLang_CompEntry *> entries{{description.Name(), &root}};
    for (const UiComponent &component : description.components.sliced(1))
        entries.insert(component.name, &root.AddOwned(component.name));
    for (auto [text, number] : numbers.asKeyValueRange()) {
        TDKLang_CompEntry *entry = entries.value(text.section(u'.', 0, 0));
        if (!entry)
            continue; // of a component that is gone
        if (!entry->FPropEntries)
            entry->FPropEntries = std::make_unique<TDKLang_PropEntries>();
        entry->FPropEntries->Add({number, false, text.section(u'.', 1), {}});
    }
    return SaveLangData(root);
}

void Collect(const TDKLang_CompEntry &entry, QList<WindowText> &texts)
{
    if (entry.FPropEntries) {
        for (const TDKLang_PropEntry &property : *entry.FPropEntries)
            texts.append({property.iID, entry.Name() + u'.' + property.wsPropName, property.wsDefLangValue, false});
    }
    if (entry.FOwnedCompEntries) {
        for (const auto &owned : *entry.FOwnedCompEntries)
            Collect(*owned, texts);
    }
}

} // namespace

QString WindowTable::LangDataPath() const
{
    return uiPath.chopped(qsizetype(sizeof(".ui")) - 1) + u".langdata"_s;
}

WindowTable NumberWindow(const QString &uiPath, const NumberLedger &ledger)
{
    const UiWindow description = ReadUiFile(uiPath);
    WindowTable table{uiPath, description.Name(), {}, {}, {}, {}};
    QHash<QString, int> known = ledger.Numbers(table.section);

    StandIn standIn(description);
    TDKLanguageController controller(&standIn.window, TableOf(description, known));
    controller.UpdateEntries(UpdateMode::DesignTime, ledger.Highest(table.section));
    table.langData = SaveLangData(controller.RootEntry());

    Collect(controller.RootEntry(), table.texts);
    std::ranges::sort(table.texts, {}, &WindowText::number);
    for (WindowText &text : table.texts) {
        text.isMeantForReaders = standIn.meantForReaders.contains(text.name);
        if (!known.remove(text.name))
            table.newOnes.append(text);
    }
    for (auto [text, number] : known.asKeyValueRange())
        table.gone.append({number, text, {}, false});
    std::ranges::sort(table.gone, {}, &WindowText::number);
    return table;
}

SourceTree::SourceTree(const QString &root) : m_root(QDir::cleanPath(root))
{
    if (!QFileInfo(m_root + u"/src"_s).isDir())
        throw ToolError(u"%1: there is no folder \"src\" with windows; say --root"_s.arg(root));
}

QList<WindowTable> SourceTree::Windows(const NumberLedger &ledger) const
{
    QStringList paths;
    for (QDirIterator files(m_root + u"/src"_s, {u"*.ui"_s}, QDir::Files, QDirIterator::Subdirectories);
         files.hasNext();)
        paths += files.next();
    paths.sort();
    QList<WindowTable> windows;
    QSet<QString> sections;
    for (const QString &path : std::as_const(paths)) {
        const WindowTable window = NumberWindow(path, ledger);
        // Other descriptions are parts of windows that are put together in code.
        if (!window.section.startsWith("frm"_L1) && !window.section.startsWith("dlg"_L1))
            continue;
        if (sections.contains(window.section.toLower()))
            throw ToolError(u"%1: another window is called %2 too"_s.arg(path, window.section));
        sections.insert(window.section.toLower());
        windows.append(window);
    }
    return windows;
}
