#include "toolkit/bound/DataSetActions.h"

#include "stores/data/FIBDataSet.h"
#include "toolkit/bound/FieldLink.h"
#include "toolkit/program/Guard.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QGuiApplication>
#include <QInputMethod>
#include <QWidget>

DataSetActions::DataSetActions(QWidget &window, QAction &post, QAction &cancel, QAction &deletion)
    : QObject(&window), m_window(window), m_post(&post), m_cancel(&cancel), m_delete(&deletion)
{
    const auto wire = [this](QAction &action, void (*act)(TDataSet &)) {
        ConnectGuarded(&action, &QAction::triggered, this, [this, act] { Run(act); });
        // The actions act on the focused control, so their buttons don't take the focus and need a mnemonic. Bar
        // buttons show the icon text, which by default is the text without its "&".
        const auto keepLetter = [&action] { action.setIconText(action.text()); };
        keepLetter();
        connect(&action, &QAction::changed, this, keepLetter);
    };
    wire(post, [](TDataSet &dataSet) { dataSet.Post(); });
    wire(cancel, [](TDataSet &dataSet) {
        const bool wasChanged = dataSet.State() == DataSetState::Edit && dataSet.Modified();
        dataSet.Cancel();
        // Another copy may have changed the row meanwhile, which is a reason to cancel.
        if (auto *query = dynamic_cast<TpFIBDataSet *>(&dataSet); query && wasChanged)
            query->FullRefresh();
    });
    wire(deletion, [](TDataSet &dataSet) { dataSet.Delete(); });
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &DataSetActions::Update);
    Update();
}

TDataSource *DataSetActions::FocusedSource() const
{
    // The focus within this window, even while another window is active.
    const QWidget *focus = m_window.focusWidget();
    for (; focus; focus = focus->parentWidget()) {
        if (const auto *bound = dynamic_cast<const DataBoundControl *>(focus))
            return bound->DataSource();
    }
    return nullptr;
}

void DataSetActions::Update()
{
    const TDataSource *source = FocusedSource();
    const TDataSet *dataSet = source ? source->DataSet() : nullptr;
    const DataSetState state = dataSet ? dataSet->State() : DataSetState::Inactive;
    const bool isEdited = state == DataSetState::Edit || state == DataSetState::Insert;
    m_post->setEnabled(isEdited);
    m_cancel->setEnabled(isEdited);
    m_delete->setEnabled(state == DataSetState::Insert || (dataSet && dataSet->RecNo() >= 0));
}

void DataSetActions::Run(void (*act)(TDataSet &))
{
    const TDataSource *source = FocusedSource();
    // Text that the input method has not committed yet is part of the post.
    QGuiApplication::inputMethod()->commit();
    if (source && source->DataSet())
        act(*source->DataSet());
}
