#pragma once

#include "toolkit/bound/FieldLink.h"

#include <QLabel>

/// A label that shows the display text of a field.
class TcxDBLabel : public QLabel, public DataBoundControl
{
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TcxDBLabel(QWidget *parent = nullptr);

    const QString &DataField() const { return m_link.FieldName(); }
    void SetDataField(const QString &name) { m_link.SetFieldName(name); }
    TDataSource *DataSource() const override { return m_link.DataSource(); }
    void SetDataSource(TDataSource *dataSource) { m_link.SetDataSource(dataSource); }

private:
    void ShowField();

    FieldLink m_link;
};
