#pragma once

#include "toolkit/bound/CxGridDBColumn.h"
#include "toolkit/bound/FieldLink.h"

#include <QTableView>

#include <functional>
#include <memory>
#include <vector>

/// A read-only table over the rows of a dataset. Texts are read when they are painted. Rows are fetched when they
/// become visible; all of them when the reader goes to the end or drags the scroll bar's thumb. The focused row follows
/// the dataset's cursor and moves it. Several rows can be selected, and copied as lines with tabs. The columns share
/// the width, with lines between them. A row that is being inserted is the last one. Rows have one height, or the
/// height of their texts (CellAutoHeight). A cell that is cut off shows its text as a hint. An empty table shows the
/// text of the property "OptionsView.NoDataToDisplayInfoText".
class TcxGridDBTableView : public QTableView, public DataBoundControl
{
    Q_OBJECT
    Q_PROPERTY(QString KeyField READ KeyField WRITE SetKeyField)
    Q_PROPERTY(int DataRowHeight READ DataRowHeight WRITE SetDataRowHeight)
    Q_PROPERTY(bool CellAutoHeight READ CellAutoHeight WRITE SetCellAutoHeight)
public:
    explicit TcxGridDBTableView(QWidget *parent = nullptr);
    ~TcxGridDBTableView() override;

    /// The field that identifies rows.
    const QString &KeyField() const { return m_keyField; }
    void SetKeyField(const QString &name) { m_keyField = name; }
    /// Values of the key field in the selected rows, from the top.
    QVariantList SelectedKeys() const;
    /// Set in pixels at 96 dpi, returned in pixels of this desktop.
    int DataRowHeight() const;
    void SetDataRowHeight(int height);
    /// Rows grow with their texts, from the data row height up; each is measured when it becomes visible.
    bool CellAutoHeight() const { return wordWrap(); }
    void SetCellAutoHeight(bool on) { setWordWrap(on); }

    /// Borrows the data source, which must outlive the view or its next SetDataSource.
    void SetDataSource(TDataSource *dataSource);
    TDataSource *DataSource() const override;

    /// Called once after a series of changes of focused row or selection, when the dataset's cursor has followed. Under
    /// the general guard.
    std::function<void()> OnSelectionChanged;

    /// The texts of a row's visible columns, from the left.
    QStringList RowTexts(int row) const;

protected:
    bool event(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyboardSearch(const QString &) override {}
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;

private:
    friend class TcxGridDBColumn;
    class Model;
    class Delegate;

    void AddColumn(TcxGridDBColumn *column);
    void ShowCaptions();
    void Rebuild();
    void FillWidth();
    void TakeWidth(int section, int width);
    void ShareWidth(int firstColumn, int width);
    void FollowCursor();
    void MoveCursor();
    bool FitVisibleRows();
    void CopyRows();
    /// Rows that the view shows at least in part.
    int RowsOnScreen() const;
    /// Makes the scroll bar as long as the list, or as its estimate until the end is known.
    void ClaimRows();
    std::vector<int> VisibleColumns() const;

    QString m_keyField;
    std::vector<TcxGridDBColumn *> m_columns;
    std::unique_ptr<Model> m_model;
    bool m_following = false;
    bool m_isMoved = false; ///< the focus has moved and the dataset's cursor has not followed yet
    bool m_filling = false;
    bool m_isSelectionDue = false; ///< OnSelectionChanged is still to be called
    bool m_isFocusMoved = false;   ///< keep the focused row in view while the rows around it grow
    int m_handling = 0;            ///< nesting of Qt's event handlers
};
