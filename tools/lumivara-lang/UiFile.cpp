#include "lumivara-lang/UiFile.h"

#include "common/Tool.h"
#include "lumivara-lang/WidgetClasses.h"

#include <QFile>
#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

class UiReader
{
public:
    explicit UiReader(const QString &path) : m_path(path), m_file(path)
    {
        if (!m_file.open(QIODevice::ReadOnly))
            throw ToolError(u"%1: %2"_s.arg(path, m_file.errorString()));
        m_xml.setDevice(&m_file);
    }

    UiWindow Read()
    {
        if (!m_xml.readNextStartElement() || m_xml.name() != "ui"_L1)
            Fail(u"not a window's description"_s);
        while (m_xml.readNextStartElement()) {
            const QStringView element = m_xml.name();
            if (element == "widget"_L1)
                ReadComponent(Attribute("class"_L1));
            else if (element == "customwidgets"_L1)
                ReadChildren("customwidget"_L1, &UiReader::ReadCustomClass);
            else if (element == "buttongroups"_L1)
                ReadChildren("buttongroup"_L1, &UiReader::ReadButtonGroup);
            else
                m_xml.skipCurrentElement();
        }
        if (m_xml.hasError())
            Fail(m_xml.errorString());
        if (m_window.components.isEmpty())
            Fail(u"it holds no window"_s);
        for (qsizetype index = 0; index < m_window.components.size(); ++index)
            m_window.components[index].classChain = ChainOf(m_classes[index]);
        return m_window;
    }

private:
    [[noreturn]] void Fail(const QString &what) const
    {
        throw ToolError(u"%1:%2: %3"_s.arg(m_path).arg(m_xml.lineNumber()).arg(what));
    }

    QString Attribute(QLatin1StringView name) const { return m_xml.attributes().value(name).toString(); }

    void ReadChildren(QLatin1StringView element, void (UiReader::*read)())
    {
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == element)
                (this->*read)();
            else
                m_xml.skipCurrentElement();
        }
    }

    void ReadCustomClass()
    {
        QByteArray name;
        QByteArray base;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == "class"_L1)
                name = m_xml.readElementText().toUtf8();
            else if (m_xml.name() == "extends"_L1)
                base = m_xml.readElementText().toUtf8();
            else
                m_xml.skipCurrentElement();
        }
        m_ownClasses.insert(name, base);
    }

    void ReadButtonGroup() { ReadComponent(u"QButtonGroup"_s); }

    void ReadComponent(const QString &className)
    {
        const qsizetype index = m_window.components.size();
        const QString name = Attribute("name"_L1);
        // Qt names an unnamed layout by itself; that name is useless for finding it.
        if (name.isEmpty())
            Fail(u"a component without a name"_s);
        if (m_names.contains(name))
            Fail(u"two components are called \"%1\""_s.arg(name));
        m_names.insert(name);
        m_window.components.append({name, {}, {}});
        m_classes.append(className.toUtf8());
        UiText items{QByteArrayLiteral("items"), {}, true, true};
        while (m_xml.readNextStartElement()) {
            const QStringView element = m_xml.name();
            if (element == "property"_L1)
                ReadProperty(m_window.components[index].texts);
            else if (element == "item"_L1 || element == "column"_L1 || element == "row"_L1)
                ReadItem(className, items);
            else if (element == "attribute"_L1)
                RefuseTabTitle();
            else
                ReadOwned();
        }
        if (!items.lines.isEmpty())
            m_window.components[index].texts.append(items);
    }

    /// What one component holds: another component, or something without texts.
    void ReadOwned()
    {
        const QStringView element = m_xml.name();
        if (element == "widget"_L1 || element == "layout"_L1)
            ReadComponent(Attribute("class"_L1));
        else if (element == "action"_L1)
            ReadComponent(u"QAction"_s);
        else if (element == "actiongroup"_L1)
            ReadComponent(u"QActionGroup"_s);
        else
            m_xml.skipCurrentElement();
    }

    /// An item of a layout holds a component, an item of a combo box its text.
    void ReadItem(const QString &className, UiText &items)
    {
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() != "property"_L1) {
                ReadOwned();
                continue;
            }
            QList<UiText> texts;
            ReadProperty(texts);
            if (texts.isEmpty())
                continue;
            if (className != "QComboBox"_L1 || texts.first().property != "text")
                Fail(u"the text of an item of %1 can't be translated from here: set it in code"_s.arg(className));
            items.lines += texts.first().lines;
            items.isMeantForReaders &= texts.first().isMeantForReaders;
        }
    }

    void RefuseTabTitle()
    {
        const QString name = Attribute("name"_L1);
        m_xml.readNextStartElement();
        if (m_xml.name() == "string"_L1 && Attribute("notr"_L1) != "true"_L1)
            Fail(u"the attribute \"%1\" can't be translated from here: set it in code"_s.arg(name));
        m_xml.skipCurrentElement();
        m_xml.skipCurrentElement();
    }

    void ReadProperty(QList<UiText> &texts)
    {
        UiText text{Attribute("name"_L1).toUtf8(), {}, false, true};
        bool isText = false;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == "string"_L1) {
                isText = true;
                ReadString(text);
            } else if (m_xml.name() == "stringlist"_L1) {
                isText = text.isList = true;
                text.isMeantForReaders = Attribute("notr"_L1) != "true"_L1;
                while (m_xml.readNextStartElement())
                    ReadString(text);
            } else {
                m_xml.skipCurrentElement();
            }
        }
        if (isText)
            texts.append(text);
    }

    void ReadString(UiText &text)
    {
        text.isMeantForReaders &= Attribute("notr"_L1) != "true"_L1;
        text.lines += m_xml.readElementText();
    }

    QList<QByteArray> ChainOf(QByteArray className) const
    {
        QList<QByteArray> chain{className};
        while (className != "QObject") {
            className = m_ownClasses.contains(className) ? m_ownClasses.value(className) : BaseClass(className);
            if (className.isEmpty() || chain.contains(className))
                throw ToolError(
                    u"%1: what the class %2 extends is not known"_s.arg(m_path, QString::fromUtf8(chain.last())));
            chain.append(className);
        }
        return chain;
    }

    QString m_path;
    QFile m_file;
    QXmlStreamReader m_xml;
    UiWindow m_window;
    QList<QByteArray> m_classes; // parallel to the components: own classes are told at the end of the file
    QHash<QByteArray, QByteArray> m_ownClasses;
    QSet<QString> m_names;
};

} // namespace

UiWindow ReadUiFile(const QString &path)
{
    return UiReader(path).Read();
}
