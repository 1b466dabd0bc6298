#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>

class TDataSet;
class TField;

/// The events of a dataset, delivered to a bound control through a data source. Calls are on the main thread, in the
/// order in which the links were added. A link must remove itself before it is destroyed.
class DataLink
{
public:
    virtual ~DataLink() = default;
    /// The dataset opened or closed.
    virtual void ActiveChanged() {}
    /// Rows were added or removed, or all may have changed; the cursor may have moved.
    virtual void DataSetChanged() {}
    /// The cursor has moved to another row.
    virtual void DataSetScrolled() {}
    /// A value of the current row changed, or its edit state.
    virtual void RecordChanged() {}
    /// TDataSet::Resume() has fetched rows, or come to the end of them; the current row is the same.
    virtual void RowsFetched() {}
};

/// Connects a dataset to its detail datasets, to bound controls and to one handler. Borrows the dataset; destroying
/// either disconnects them.
class TDataSource : public QObject
{
    Q_OBJECT
public:
    explicit TDataSource(QObject *owner = nullptr);
    ~TDataSource() override;

    TDataSet *DataSet() const { return m_dataSet; }
    void SetDataSet(TDataSet *dataSet);

    void AddLink(DataLink *link);
    void RemoveLink(DataLink *link);

    /// Called when the dataset opens, the current row changes, on a refresh and when a value changes. Called after the
    /// links, so that details are at the new row already.
    std::function<void()> OnDataChange;
    /// Called when the dataset's state changes.
    std::function<void()> OnStateChange;

    enum class Event { Active, DataSet, Scroll, Record, State, Fetched };

private:
    friend class TDataSet;
    void Notify(Event event);

    TDataSet *m_dataSet = nullptr;
    QList<DataLink *> m_links;
};

/// A link that registers with one data source, until its destruction. Borrows the data source, which may be destroyed
/// first.
class SourceLink : public DataLink
{
public:
    SourceLink() = default;
    ~SourceLink() override { SetDataSource(nullptr); }
    SourceLink(const SourceLink &) = delete;
    SourceLink &operator=(const SourceLink &) = delete;

    TDataSource *DataSource() const { return m_dataSource; }
    /// Replaces the data source; null for none.
    void SetDataSource(TDataSource *dataSource);
    /// The dataset, open or not; null if there is none.
    TDataSet *DataSet() const { return m_dataSource ? m_dataSource->DataSet() : nullptr; }
    /// The dataset while it is open, else null.
    TDataSet *OpenDataSet() const;

private:
    QPointer<TDataSource> m_dataSource;
};
