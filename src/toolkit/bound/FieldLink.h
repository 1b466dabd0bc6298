#pragma once

#include "stores/data/DataSource.h"

#include <QString>

#include <functional>

class TField;

/// A control that shows rows or values of a data source. DataSetActions asks the focused one for it.
class DataBoundControl
{
public:
    virtual ~DataBoundControl() = default;
    /// Null while the control is not bound.
    virtual TDataSource *DataSource() const = 0;
};

/// Connects an edit control to one field of a data source's current row. Borrows the data source.
class FieldLink : public SourceLink
{
public:
    /// `show` is called whenever the field's value, or whether it can be edited, may have changed.
    explicit FieldLink(std::function<void()> show) : m_show(std::move(show)) {}

    void SetDataSource(TDataSource *dataSource);
    const QString &FieldName() const { return m_fieldName; }
    /// Binds the control to that field and shows its value.
    void SetFieldName(const QString &name);

    /// The field while the dataset is open and has it, else null.
    TField *Field() const;
    /// False without a current or pending row: editing never inserts a row.
    bool CanEdit() const;
    /// The row is being edited or inserted.
    bool IsEditing() const;
    /// Puts the dataset into edit state and lets `write` set the field, without a call of `show`, since the control has
    /// the value already. After a failure the control shows the field's value again and the exception is passed on.
    void Write(const std::function<void(TField &)> &write);

    void ActiveChanged() override { Show(); }
    void DataSetChanged() override { Show(); }
    void DataSetScrolled() override { Show(); }
    void RecordChanged() override { Show(); }

private:
    void Show() const;

    std::function<void()> m_show;
    QString m_fieldName;
    bool m_isWriting = false;
};
