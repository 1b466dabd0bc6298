#pragma once

#include <QObject>
#include <QString>

class TDBTreeList;

/// A column of a data-bound tree: a field of the dataset, shown or hidden. Owned by its tree.
class TDBTreeListColumn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString FieldName READ FieldName CONSTANT)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
public:
    TDBTreeListColumn(TDBTreeList &tree, const QString &fieldName, bool visible);

    const QString &FieldName() const { return m_fieldName; }
    bool Visible() const { return m_visible; }
    void SetVisible(bool visible);

private:
    TDBTreeList &m_tree;
    QString m_fieldName;
    bool m_visible;
};
