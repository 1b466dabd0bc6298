#pragma once

#include "stores/engine/Values.h"

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>

class TDataSet;

/// One column of a dataset, its value that of the current row. Owned by its dataset and named like a control
/// (dataset name and field name by default). A text column holds characters, a blob the bytes as stored; a blob is
/// read only when its value is asked for.
class TField : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString FieldName READ FieldName CONSTANT)
    Q_PROPERTY(QString DisplayLabel READ DisplayLabel WRITE SetDisplayLabel)
    Q_PROPERTY(QVariant Value READ Value)
    Q_PROPERTY(QString DisplayText READ DisplayText)
public:
    TField(TDataSet &dataSet, const QString &fieldName, FieldType type, int size, int index);

    const QString &FieldName() const { return m_fieldName; }
    FieldType Type() const { return m_type; }
    /// Declared size of a wide string in characters (UTF-16 units); 0 for other types.
    int Size() const { return m_size; }
    /// Position among the dataset's fields, from 0.
    int Index() const { return m_index; }
    QString DisplayLabel() const { return m_displayLabel.isEmpty() ? m_fieldName : m_displayLabel; }
    void SetDisplayLabel(const QString &label) { m_displayLabel = label; }

    /// Stores an empty string as null. On by default for wide strings.
    bool EmptyStrToNull() const { return m_emptyStrToNull; }
    void SetEmptyStrToNull(bool on) { m_emptyStrToNull = on; }

    bool IsNull() const;
    /// 0 for null or no row. Throws DatabaseError for a text that is no number.
    int AsInteger() const;
    /// Characters; empty for null or no row. A blob is decoded as UTF-8.
    QString AsString() const;
    /// A blob's bytes as stored, a text as UTF-8; empty for null or no row.
    QByteArray AsBytes() const;
    QDateTime AsDateTime() const;
    /// Null QVariant for a database null or no row; else int, QString, QDateTime or QByteArray.
    QVariant Value() const;
    /// The value the row had when it was read, before the edit.
    QVariant OldValue() const;
    /// The text that a control shows: OnGetText's if it is set, else AsString().
    QString DisplayText() const;

    /// Setters need the dataset in edit or insert state, else they throw. A string longer than Size() throws.
    void SetAsInteger(int value);
    void SetAsString(const QString &value);
    void SetAsBytes(const QByteArray &value);
    void SetAsDateTime(const QDateTime &value);
    void SetValue(const QVariant &value);
    void Clear() { SetValue(QVariant()); }

    /// Replaces the text that controls show; called with the dataset at that row.
    std::function<QString(const TField &)> OnGetText;

private:
    /// The value converted to this type of field. Throws DatabaseError if that is impossible.
    QVariant Converted(const QVariant &value) const;
    QVariant ConvertedNumber(const QVariant &value) const;

    TDataSet &m_dataSet;
    QString m_fieldName;
    QString m_displayLabel;
    FieldType m_type;
    int m_size;
    int m_index;
    bool m_emptyStrToNull = true;
};
