#pragma once

#include "stores/data/DataSource.h"

#include <QFrame>
#include <QStringList>

#include <array>

class QToolButton;

/// Buttons that move a dataset's cursor: first, prior, next, last, and one that reads the rows again. They take the
/// focus by Tab, not by a click.
class TDBNavigator : public QFrame, private SourceLink
{
    Q_OBJECT
    Q_PROPERTY(QStringList Hints READ Hints WRITE SetHints)
public:
    explicit TDBNavigator(QWidget *parent = nullptr);

    /// One for each button, from the left.
    QStringList Hints() const;
    void SetHints(const QStringList &hints);
    /// Puts the buttons after a control that is in the tab order already.
    void FollowInTabOrder(QWidget &control);
    /// Borrows the data source.
    void SetDataSource(TDataSource *dataSource);

private:
    enum Button { First, Prior, Next, Last, Refresh, ButtonCount };

    void ActiveChanged() override { ShowState(); }
    void DataSetChanged() override { ShowState(); }
    void DataSetScrolled() override { ShowState(); }
    void RecordChanged() override { ShowState(); }
    void RowsFetched() override { ShowState(); }
    void ShowState();
    void Press(Button button);

    std::array<QToolButton *, ButtonCount> m_buttons{};
};
