#pragma once

#include "toolkit/bound/FieldLink.h"

#include <QComboBox>

/// A combo of values of an integer field, each with a description and perhaps a picture. The descriptions are the
/// properties "Properties.Items[0].Description" and so on, stored in the window's .ui file.
class TcxDBImageComboBox : public QComboBox, public DataBoundControl
{
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TcxDBImageComboBox(QWidget *parent = nullptr);

    const QString &DataField() const { return m_link.FieldName(); }
    void SetDataField(const QString &name) { m_link.SetFieldName(name); }
    TDataSource *DataSource() const override { return m_link.DataSource(); }
    void SetDataSource(TDataSource *dataSource) { m_link.SetDataSource(dataSource); }

    void AddItem(int value, const QIcon &image = {});

protected:
    bool event(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void ShowField();
    void ShowDescriptions();
    void TakeChoice(int index);

    FieldLink m_link;
};
