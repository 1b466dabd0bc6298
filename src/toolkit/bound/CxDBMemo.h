#pragma once

#include "toolkit/bound/FieldLink.h"

#include <QPlainTextEdit>

/// A memo on a text field, otherwise like TcxDBTextEdit. An untouched text keeps its line ends; an edited one keeps
/// their kind. Each counts with its own length.
class TcxDBMemo : public QPlainTextEdit, public DataBoundControl
{
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TcxDBMemo(QWidget *parent = nullptr);

    const QString &DataField() const { return m_link.FieldName(); }
    void SetDataField(const QString &name) { m_link.SetFieldName(name); }
    TDataSource *DataSource() const override { return m_link.DataSource(); }
    void SetDataSource(TDataSource *dataSource) { m_link.SetDataSource(dataSource); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    void ShowField();
    void TakeText();
    QString Text() const;
    QString Fitting(const QString &inserted) const;

    FieldLink m_link;
    QString m_shown; ///< the last text, with LF, that field and memo agreed on
    QString m_lineEnd;
    bool m_isShowing = false;
};
