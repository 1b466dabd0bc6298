#pragma once

#include "stores/data/DataSource.h"

#include <QString>

#include <functional>

class TField;

/// A control that shows rows or values of a data source. Commands that act on "the data in focus" ask for it.
class DataBoundControl
{
public:
    virtual ~DataBoundControl() = default;
    /// Null while it is bound to none.
    virtual TDataSource *DataSource() const = 0;
};

/// The tie between an edit control and one field of a data source's current row. Borrows the data source.
class FieldLink : public SourceLink
{
public:
    /// `show` is called whenever the field may have another value, or may be edited where it could not be, or no more.
    explicit FieldLink(std::function<void()> show) : m_show(std::move(show)) {}

    void SetDataSource(TDataSource *dataSource);
    const QString &FieldName() const { return m_fieldName; }
    /// The control then shows that field.
    void SetFieldName(const QString &name);

    /// The field while the dataset is open and has it, else null.
    TField *Field() const;
    /// False without a current or pending row: an edit never makes a row of its own.
    bool CanEdit() const;
    /// The row is being edited or inserted.
    bool IsEditing() const;
    /// Puts the dataset into edit state and lets `write` set the field; the control, which has the value already, is
    /// not shown anew meanwhile. What fails is thrown after the control shows the field's value again.
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
