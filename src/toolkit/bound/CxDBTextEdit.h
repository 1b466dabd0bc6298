#pragma once

#include "toolkit/bound/FieldLink.h"

#include <QLineEdit>

/// A line edit on a text field. Typed or pasted text goes to the field at once and is cut at the field's size (UTF-16
/// units, no half surrogate pair), so that a post never misses a keystroke. Without a row it is read only.
class TcxDBTextEdit : public QLineEdit, public DataBoundControl
{
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TcxDBTextEdit(QWidget *parent = nullptr);

    const QString &DataField() const { return m_link.FieldName(); }
    void SetDataField(const QString &name) { m_link.SetFieldName(name); }
    TDataSource *DataSource() const override { return m_link.DataSource(); }
    void SetDataSource(TDataSource *dataSource) { m_link.SetDataSource(dataSource); }

private:
    void ShowField();
    void TakeText();
    void DropHalfPairs();

    FieldLink m_link;
    bool m_isShowing = false;
};
