#include "presentation/languages/Published.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QMetaProperty>
#include <QSet>
#include <QSignalBlocker>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int maxNesting = 16; // objects may point back at those that hold them
constexpr QLatin1StringView lineBreak("\r\n");
constexpr QLatin1StringView comboItemsName("Properties.Items");

// The tables' names for Qt's properties.
struct Renamed
{
    QByteArrayView className, property;
    QLatin1StringView published;
};
constexpr Renamed renamedProperties[] = {
    {"QWidget", "windowTitle", QLatin1StringView("Caption")},
    {"QWidget", "toolTip", QLatin1StringView("Hint")},
    {"QAction", "text", QLatin1StringView("Caption")},
    {"QAction", "toolTip", QLatin1StringView("Hint")},
    {"QAbstractButton", "text", QLatin1StringView("Caption")},
    {"QLabel", "text", QLatin1StringView("Caption")},
    {"QGroupBox", "title", QLatin1StringView("Caption")},
    {"QMenu", "title", QLatin1StringView("Caption")},
    {"QLineEdit", "text", QLatin1StringView("Text")},
    {"QLineEdit", "placeholderText", QLatin1StringView("TextHint")},
    {"QPlainTextEdit", "plainText", QLatin1StringView("Lines")},
    {"QPlainTextEdit", "placeholderText", QLatin1StringView("TextHint")},
    {"QTextEdit", "plainText", QLatin1StringView("Lines")},
    {"QTextEdit", "placeholderText", QLatin1StringView("TextHint")},
    {"QComboBox", "items", comboItemsName},
};

// String properties that are styles, state or the object's name, not texts.
constexpr QByteArrayView unpublishedProperties[] = {"objectName", "styleSheet", "currentText", "inputMask"};

/// One property of a class that the walk knows: a text, a nested object or a collection.
struct Member
{
    enum Kind { Text, Object, Objects } kind;
    QString name;
    QMetaProperty property;
};

struct ClassMembers
{
    std::vector<Member> members;
    QHash<QString, qsizetype> byName;
    bool isCombo = false;

    const Member *Find(const QString &name) const
    {
        const auto found = byName.constFind(name);
        return found != byName.cend() ? &members[*found] : nullptr;
    }
};

bool IsText(QMetaType type)
{
    return type == QMetaType::fromType<QString>() || type == QMetaType::fromType<QStringList>();
}

ClassMembers MembersOf(const QMetaObject *meta)
{
    ClassMembers result;
    QList<QByteArray> chain;
    for (const auto *at = meta; at; at = at->superClass())
        chain.append(at->className());
    result.isCombo = chain.contains("QComboBox");
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const QMetaType type = property.metaType();
        Member member{Member::Text, PublishedName(chain, property.name()), property};
        if (member.name.isEmpty() || !property.isReadable())
            continue;
        if (type == QMetaType::fromType<QList<QObject *>>())
            member.kind = Member::Objects;
        else if (type.flags().testFlag(QMetaType::PointerToQObject))
            member.kind = Member::Object;
        else if (!IsText(type) || !property.isWritable())
            continue;
        // Properties come base class first; one that a derived class declares again replaces the base's.
        const auto known = result.byName.constFind(member.name);
        if (known != result.byName.cend()) {
            result.members[*known] = member;
            continue;
        }
        result.byName.insert(member.name, qsizetype(result.members.size()));
        result.members.push_back(member);
    }
    return result;
}

const ClassMembers &CachedMembersOf(const QObject &object)
{
    static QHash<const QMetaObject *, std::shared_ptr<ClassMembers>> cache;
    auto &members = cache[object.metaObject()];
    if (!members)
        members = std::make_shared<ClassMembers>(MembersOf(object.metaObject()));
    return *members;
}

QString Capitalised(const QByteArray &name)
{
    QString result = QString::fromUtf8(name);
    if (!result.isEmpty())
        result[0] = result[0].toUpper();
    return result;
}

bool IsUnpublished(QByteArrayView name)
{
    return name.startsWith("_q_") || std::find(std::begin(unpublishedProperties), std::end(unpublishedProperties),
                                               name) != std::end(unpublishedProperties);
}

/// The dynamic property of a published name; empty if the object has none.
QByteArray DynamicNameOf(const QObject &object, const QString &published)
{
    const QList<QByteArray> names = object.dynamicPropertyNames();
    const auto found = std::find_if(names.cbegin(), names.cend(), [&published](const QByteArray &name) {
        return !IsUnpublished(name) && Capitalised(name) == published;
    });
    return found != names.cend() ? *found : QByteArray();
}

QAbstractItemModel *ComboModel(const QObject &combo)
{
    return combo.findChild<QAbstractItemModel *>(QString(), Qt::FindDirectChildrenOnly);
}

// Components have their own entries in the table and are not entered from another one.
bool IsComponent(const QObject &object)
{
    return object.isWidgetType() || object.inherits("QAction") || !object.objectName().isEmpty();
}

QString Joined(const QStringList &lines)
{
    QString text = lines.join(lineBreak);
    return !lines.isEmpty() && lines.last().isEmpty() ? text + lineBreak : text;
}

QString WithLineFeeds(QString text)
{
    if (!text.contains(u'\r'))
        return text;
    return text.replace(lineBreak, QLatin1StringView("\n")).replace(u'\r', u'\n');
}

QStringList Lines(const QString &text)
{
    QStringList lines = WithLineFeeds(text).split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QString TextOf(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<QStringList>() ? Joined(value.toStringList()) : value.toString();
}

QVariant ValueOf(const QString &text, QMetaType type)
{
    return type == QMetaType::fromType<QStringList>() ? QVariant(Lines(text)) : QVariant(WithLineFeeds(text));
}

void WriteComboItems(QObject &combo, const QString &text)
{
    QAbstractItemModel *model = ComboModel(combo);
    if (!model)
        return;
    const QStringList lines = Lines(text);
    const QSignalBlocker quiet(&combo);
    const QVariant chosen = combo.property("currentIndex");
    const int rows = model->rowCount(), wanted = int(lines.size());
    if (rows > wanted)
        model->removeRows(wanted, rows - wanted);
    else if (rows < wanted)
        model->insertRows(rows, wanted - rows);
    for (int row = 0; row < wanted; ++row)
        model->setData(model->index(row, 0), lines[row], Qt::DisplayRole);
    combo.setProperty("currentIndex", chosen.toInt() < wanted ? chosen : QVariant(-1));
}

QString ReadComboItems(const QObject &combo)
{
    const QAbstractItemModel *model = ComboModel(combo);
    QStringList lines;
    for (int row = 0; model && row < model->rowCount(); ++row)
        lines.append(model->index(row, 0).data(Qt::DisplayRole).toString());
    return Joined(lines);
}

} // namespace

QString PublishedName(const QList<QByteArray> &classChain, const QByteArray &property)
{
    if (IsUnpublished(property))
        return {};
    const auto rowOf = [](QByteArrayView className, auto matches) {
        return std::find_if(std::begin(renamedProperties), std::end(renamedProperties),
                            [&](const Renamed &row) { return row.className == className && matches(row); });
    };
    const auto *const none = std::end(renamedProperties);
    for (qsizetype level = 0; level < classChain.size(); ++level) {
        const auto *row = rowOf(classChain[level], [&](const Renamed &r) { return r.property == property; });
        if (row == none)
            continue;
        // A button's caption is its text, so its invisible window title is not published.
        for (qsizetype nearer = 0; nearer < level; ++nearer)
            if (rowOf(classChain[nearer], [row](const Renamed &r) { return r.published == row->published; }) != none)
                return {};
        return row->published;
    }
    return Capitalised(property);
}

bool PublishedText::IsStored() const
{
    return m_kind != Kind::Declared || m_property.isStored();
}

QString PublishedText::Read() const
{
    switch (m_kind) {
    case Kind::Declared:
        return TextOf(m_property.read(m_object));
    case Kind::Dynamic:
        return TextOf(m_object->property(m_dynamicName.constData()));
    case Kind::ComboItems:
        return ReadComboItems(*m_object);
    case Kind::None:
        break;
    }
    return {};
}

void PublishedText::Write(const QString &text) const
{
    switch (m_kind) {
    case Kind::Declared:
        m_property.write(m_object, ValueOf(text, m_property.metaType()));
        break;
    case Kind::Dynamic: {
        const QMetaType type = m_object->property(m_dynamicName.constData()).metaType();
        m_object->setProperty(m_dynamicName.constData(), ValueOf(text, type));
        break;
    }
    case Kind::ComboItems:
        WriteComboItems(*m_object, text);
        break;
    case Kind::None:
        break;
    }
}

/// The steps shared by finding one property and visiting all.
class PublishedWalk
{
public:
    static PublishedText Declared(QObject *object, const QMetaProperty &property)
    {
        PublishedText text;
        text.m_kind = PublishedText::Kind::Declared;
        text.m_object = object;
        text.m_property = property;
        return text;
    }
    static PublishedText Dynamic(QObject *object, const QByteArray &name)
    {
        PublishedText text;
        text.m_kind = PublishedText::Kind::Dynamic;
        text.m_object = object;
        text.m_dynamicName = name;
        return text;
    }
    static PublishedText ComboItems(QObject *object)
    {
        PublishedText text;
        text.m_kind = PublishedText::Kind::ComboItems;
        text.m_object = object;
        return text;
    }

    static PublishedText TextOf(QObject *object, const QString &name)
    {
        const ClassMembers &members = CachedMembersOf(*object);
        if (const Member *member = members.Find(name))
            return member->kind == Member::Text ? Declared(object, member->property) : PublishedText();
        if (members.isCombo && name == comboItemsName)
            return ComboItems(object);
        const QByteArray dynamicName = DynamicNameOf(*object, name);
        if (!dynamicName.isEmpty() && IsText(object->property(dynamicName.constData()).metaType()))
            return Dynamic(object, dynamicName);
        return {};
    }

    /// The value of a property that is no text; invalid if there is none.
    static QVariant ObjectsOf(QObject *object, const QString &name)
    {
        const Member *member = CachedMembersOf(*object).Find(name);
        if (member)
            return member->kind == Member::Text ? QVariant() : member->property.read(object);
        const QByteArray dynamicName = DynamicNameOf(*object, name);
        return dynamicName.isEmpty() ? QVariant() : object->property(dynamicName.constData());
    }

    static QObject *Nested(const QVariant &value)
    {
        const bool isPointer = value.metaType().flags().testFlag(QMetaType::PointerToQObject);
        auto *object = isPointer ? value.value<QObject *>() : nullptr;
        return object && !IsComponent(*object) ? object : nullptr;
    }

    static QList<QObject *> Items(const QVariant &value)
    {
        return value.metaType() == QMetaType::fromType<QList<QObject *>>() ? value.value<QList<QObject *>>()
                                                                           : QList<QObject *>();
    }

    static void Visit(QObject *object, const QString &prefix, int depth, const PublishedFilter &filter,
                      const std::function<void(const QString &, const PublishedText &)> &visit)
    {
        const auto nameIn = [&prefix](const QString &name) { return prefix.isEmpty() ? name : prefix + u'.' + name; };
        const auto visitText = [&](const QString &name, const PublishedText &text) {
            if (!filter || filter(nameIn(name), nullptr))
                visit(nameIn(name), text);
        };
        const auto visitObjects = [&](const QString &name, const QVariant &value) {
            if (depth < maxNesting)
                VisitObjects(value, nameIn(name), depth, filter, visit);
        };
        const ClassMembers &members = CachedMembersOf(*object);
        for (const Member &member : members.members) {
            if (prefix.isEmpty() && member.name == u"Name")
                continue;
            if (member.kind == Member::Text)
                visitText(member.name, Declared(object, member.property));
            else
                visitObjects(member.name, member.property.read(object));
        }
        if (members.isCombo)
            visitText(comboItemsName, ComboItems(object));
        const QList<QByteArray> dynamicNames = object->dynamicPropertyNames();
        for (const QByteArray &dynamicName : dynamicNames) {
            const QString name = Capitalised(dynamicName);
            const bool isName = prefix.isEmpty() && name == u"Name";
            if (isName || IsUnpublished(dynamicName) || members.Find(name))
                continue;
            const QVariant value = object->property(dynamicName.constData());
            if (IsText(value.metaType()))
                visitText(name, Dynamic(object, dynamicName));
            else
                visitObjects(name, value);
        }
    }

private:
    static void VisitObjects(const QVariant &value, const QString &fullName, int depth, const PublishedFilter &filter,
                             const std::function<void(const QString &, const PublishedText &)> &visit)
    {
        QObject *nested = Nested(value);
        const QList<QObject *> items = Items(value);
        if ((!nested && items.isEmpty()) || (filter && !filter(fullName, nested)))
            return;
        if (nested)
            Visit(nested, fullName, depth + 1, filter, visit);
        for (qsizetype i = 0; i < items.size(); ++i)
            if (items[i] && !IsComponent(*items[i]))
                Visit(items[i], QStringLiteral("%1[%2]").arg(fullName).arg(i), depth + 1, filter, visit);
    }
};

namespace {

/// The object that the beginning of `rest` names, with what follows it cut off; null if it names none.
QObject *EnterFirst(QObject *object, QString &rest, QString &entered, const QObject **holder)
{
    for (qsizetype end = 0; end < rest.size(); ++end) {
        if (rest[end] != u'.' && rest[end] != u'[')
            continue;
        const QString name = rest.first(end);
        const QVariant value = PublishedWalk::ObjectsOf(object, name);
        if (rest[end] == u'.') {
            if (QObject *nested = PublishedWalk::Nested(value)) {
                entered = name;
                rest = rest.sliced(end + 1);
                *holder = nested;
                return nested;
            }
            continue;
        }
        const QList<QObject *> items = PublishedWalk::Items(value);
        const qsizetype close = rest.indexOf(QLatin1StringView("]."), end);
        if (items.isEmpty() || close < 0)
            continue;
        bool isNumber = false;
        const uint index = QStringView(rest).sliced(end + 1, close - end - 1).toUInt(&isNumber);
        if (!isNumber || index >= size_t(items.size()) || !items[index] || IsComponent(*items[index]))
            return nullptr;
        entered = name;
        rest = rest.sliced(close + 2);
        *holder = nullptr;
        return items[index];
    }
    return nullptr;
}

} // namespace

PublishedText FindPublished(QObject *component, const QString &fullName, const PublishedFilter &filter)
{
    if (fullName == u"Name")
        return {};
    QString rest = fullName;
    QObject *object = component;
    for (int depth = 0; object && depth <= maxNesting; ++depth) {
        if (const PublishedText text = PublishedWalk::TextOf(object, rest); text.IsValid())
            return !filter || filter(fullName, nullptr) ? text : PublishedText();
        const qsizetype before = fullName.size() - rest.size();
        QString entered;
        const QObject *holder = nullptr;
        object = EnterFirst(object, rest, entered, &holder);
        if (object && filter && !filter(fullName.first(before + entered.size()), holder))
            return {};
    }
    return {};
}

void WalkPublished(QObject *component, const PublishedFilter &filter,
                   const std::function<void(const QString &fullName, const PublishedText &)> &visit)
{
    PublishedWalk::Visit(component, {}, 0, filter, visit);
}
