#pragma once

#include "toolkit/bound/DBTreeListColumn.h"

#include <QTreeView>

#include <memory>
#include <vector>

class TDataSource;

/// A tree over the rows of a dataset: nodes by a key and a parent field, texts read from the dataset when they are
/// painted. The focused node follows the dataset's cursor and moves it; a group that collapses around it becomes the
/// focused node. Faulty keys never lose a row, see TreeShape. Read only, no header, no icons; the selected node is
/// bold, a name that is cut off shows itself as a hint. A change of the dataset's rows collapses all nodes.
class TDBTreeList : public QTreeView
{
    Q_OBJECT
    Q_PROPERTY(QString KeyField READ KeyField WRITE SetKeyField)
    Q_PROPERTY(QString ParentField READ ParentField WRITE SetParentField)
    Q_PROPERTY(QString RootValue READ RootValue WRITE SetRootValue)
public:
    explicit TDBTreeList(QWidget *parent = nullptr);
    ~TDBTreeList() override;

    const QString &KeyField() const { return m_keyField; }
    void SetKeyField(const QString &name) { m_keyField = name; }
    const QString &ParentField() const { return m_parentField; }
    void SetParentField(const QString &name) { m_parentField = name; }
    /// A row whose parent field equals it is at the top level.
    const QString &RootValue() const { return m_rootValue; }
    void SetRootValue(const QString &value) { m_rootValue = value; }

    /// Adds a column with its object name. The visible columns share the tree's width; the first of them has the
    /// branches. REQUIRES: called before SetDataSource.
    TDBTreeListColumn &AddColumn(const QString &fieldName, const QString &objectName, bool visible);
    /// The column of a field; null if there is none.
    TDBTreeListColumn *Column(const QString &fieldName) const;

    /// Borrows the data source, which must outlive the tree or its next SetDataSource.
    void SetDataSource(TDataSource *dataSource);
    TDataSource *DataSource() const;

    /// Expands every node and shows the focused one.
    void FullExpand();
    void FullCollapse();

    /// The dataset's row of a node, -1 for none; and the node of a row, in the column that has the branches.
    int RowOf(const QModelIndex &node) const;
    QModelIndex NodeOf(int row) const;
    /// The row that stands below a row or above it when every node is open; -1 if there is none.
    int RowBeside(int row, bool isAbove) const;

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index, const QEvent *event) const override;

private:
    friend class TDBTreeListColumn;
    class Model;
    class Delegate;

    void ShowColumns();
    void FollowCursor();
    /// Focuses a collapsed group if the focused node is inside it.
    void FocusGroup(const QModelIndex &group);

    QString m_keyField, m_parentField, m_rootValue;
    std::vector<TDBTreeListColumn *> m_columns;
    std::unique_ptr<Model> m_model;
    bool m_following = false;
};
