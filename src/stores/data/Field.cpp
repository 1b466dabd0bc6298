#include "stores/data/Field.h"

#include "stores/data/DataSet.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/Values.h"

#include <QLocale>

#include <limits>

using namespace Qt::StringLiterals;

TField::TField(TDataSet &dataSet, const QString &fieldName, FieldType type, int size, int index)
    : m_dataSet(dataSet), m_fieldName(fieldName), m_type(type), m_size(size), m_index(index)
{}

bool TField::IsNull() const
{
    return Value().isNull();
}

int TField::AsInteger() const
{
    const QVariant value = Value();
    if (value.isNull())
        return 0;
    bool ok = false;
    const qlonglong number =
        m_type == FieldType::Blob ? QString::fromUtf8(value.toByteArray()).toLongLong(&ok) : value.toLongLong(&ok);
    if (!ok || number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        throw DatabaseError(u"%1: \"%2\" is not a valid integer"_s.arg(m_fieldName, ValueText(value)));
    return static_cast<int>(number);
}

QString TField::AsString() const
{
    return ValueText(Value());
}

QByteArray TField::AsBytes() const
{
    const QVariant value = Value();
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : ValueText(value).toUtf8();
}

QDateTime TField::AsDateTime() const
{
    return Value().toDateTime();
}

QVariant TField::Value() const
{
    return m_dataSet.CurrentValue(m_index);
}

QVariant TField::OldValue() const
{
    return m_dataSet.DoOldValue(m_index);
}

QString TField::DisplayText() const
{
    return OnGetText ? OnGetText(*this) : AsString();
}

void TField::SetAsInteger(int value)
{
    SetValue(value);
}

void TField::SetAsString(const QString &value)
{
    SetValue(value);
}

void TField::SetAsBytes(const QByteArray &value)
{
    SetValue(value);
}

void TField::SetAsDateTime(const QDateTime &value)
{
    SetValue(value);
}

void TField::SetValue(const QVariant &value)
{
    m_dataSet.SetPendingValue(m_index, Converted(value));
}

QVariant TField::Converted(const QVariant &value) const
{
    if (!value.isValid())
        return {};
    switch (m_type) {
    case FieldType::Integer:
    case FieldType::SmallInt:
        return ConvertedNumber(value);
    case FieldType::DateTime: {
        if (ValueText(value).isEmpty())
            return {};
        const QDateTime moment = value.typeId() == QMetaType::QString
                                     ? QLocale().toDateTime(value.toString(), QLocale::ShortFormat)
                                     : value.toDateTime();
        if (!moment.isValid())
            throw DatabaseError(u"%1: \"%2\" is not a valid date and time"_s.arg(m_fieldName, ValueText(value)));
        return moment;
    }
    case FieldType::Blob:
        return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : ValueText(value).toUtf8();
    case FieldType::WideString:
        break;
    }
    const QString text = ValueText(value);
    if (text.isEmpty() && m_emptyStrToNull)
        return {};
    if (m_size > 0 && text.size() > m_size) {
        throw DatabaseError(
            u"%1: the text has %2 characters, %3 are allowed"_s.arg(m_fieldName).arg(text.size()).arg(m_size));
    }
    return text.isNull() ? QString(u""_s) : text;
}

QVariant TField::ConvertedNumber(const QVariant &value) const
{
    const QString text = ValueText(value);
    if (text.isEmpty())
        return {};
    bool ok = false;
    const qlonglong number = value.typeId() == QMetaType::QByteArray ? text.toLongLong(&ok) : value.toLongLong(&ok);
    const bool small = m_type == FieldType::SmallInt;
    const qlonglong least = small ? std::numeric_limits<short>::min() : std::numeric_limits<int>::min();
    const qlonglong most = small ? std::numeric_limits<short>::max() : std::numeric_limits<int>::max();
    if (!ok || number < least || number > most)
        throw DatabaseError(u"%1: \"%2\" is not a valid integer"_s.arg(m_fieldName, text));
    return static_cast<int>(number);
}
