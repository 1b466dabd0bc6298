#pragma once

#include <QObject>
#include <QPointer>

class QAction;
class QWidget;
class TDataSource;

/// The standard actions on a dataset: post, cancel, delete. They act on the data source of the bound control that has
/// the focus when they are triggered; its state enables them, updated before the event loop goes idle.
class DataSetActions : public QObject
{
    Q_OBJECT
public:
    /// Borrows the actions; a child of the window.
    DataSetActions(QWidget &window, QAction &post, QAction &cancel, QAction &deletion);

    /// The focused control's data source; null if it is not bound. A combo's open list counts as the combo.
    TDataSource *FocusedSource() const;
    void Update();

private:
    void Run(void (*act)(class TDataSet &));

    QWidget &m_window;
    QPointer<QAction> m_post, m_cancel, m_delete;
};
