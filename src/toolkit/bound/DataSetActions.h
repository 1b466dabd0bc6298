#pragma once

#include <QObject>
#include <QPointer>

class QAction;
class QWidget;
class TDataSource;

/// The standard actions on a dataset: post, cancel, delete. They name no data source and act on that of the bound
/// control that has the focus when they are triggered; before the event loop rests they are enabled by its state.
class DataSetActions : public QObject
{
    Q_OBJECT
public:
    /// Borrows window and actions; belongs to the window.
    DataSetActions(QWidget &window, QAction &post, QAction &cancel, QAction &deletion);

    /// The data source in focus; null if the focus is on nothing that is bound. A combo's open list is the combo.
    TDataSource *FocusedSource() const;
    void Update();

private:
    void Run(void (*act)(class TDataSet &));

    QWidget &m_window;
    QPointer<QAction> m_post, m_cancel, m_delete;
};
