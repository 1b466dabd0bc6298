#pragma once

#include "toolkit/bound/CxGridDBColumn.h"
#include "toolkit/bound/FieldLink.h"

#include <QTableView>

#include <functional>
#include <memory>
#include <vector>

/// A table over the rows of a dataset: texts are read when they are painted, rows fetched when they come to be seen,
/// all of them when the reader goes to the end or takes hold of the scroll bar's thumb. The focused row follows the
/// dataset's cursor and moves it; more rows can be selected, and copied as lines with tabs. Read only, lines between
/// the columns, which share the width. A row that is being inserted stands at the end. Rows are of one height, or as
/// high as their texts need (CellAutoHeight). A cell that is cut off shows its text as a hint. An empty table shows the
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

    /// The field that tells rows apart.
    const QString &KeyField() const { return m_keyField; }
    void SetKeyField(const QString &name) { m_keyField = name; }
    /// Values of the key field in the selected rows, from the top.
    QVariantList SelectedKeys() const;
    /// Set in pixels at 96 dpi, answered as it stands on this desktop.
    int DataRowHeight() const;
    void SetDataRowHeight(int height);
    /// Rows grow with their texts from the data row height up; each is measured when it comes to be seen.
    bool CellAutoHeight() const { return wordWrap(); }
    void SetCellAutoHeight(bool on) { setWordWrap(on); }

    /// Borrows the data source, which must live until the view dies or gets another.
    void SetDataSource(TDataSource *dataSource);
    TDataSource *DataSource() const override;

    /// After the focused row or the selection has changed, once the dataset's cursor has followed; a row of changes is
    /// told once. Under the general guard.
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
    /// Makes the scroll bar as long as the list, or as it is taken to be until its end is known.
    void ClaimRows();
    std::vector<int> VisibleColumns() const;

    QString m_keyField;
    std::vector<TcxGridDBColumn *> m_columns;
    std::unique_ptr<Model> m_model;
    bool m_following = false;
    bool m_isMoved = false; ///< the focus has left the dataset's cursor behind
    bool m_filling = false;
    bool m_isSelectionDue = false; ///< to be told
    bool m_isFocusMoved = false;   ///< and is to stay in view while the rows around it grow
    int m_handling = 0;            ///< events that the toolkit is at work on
};
