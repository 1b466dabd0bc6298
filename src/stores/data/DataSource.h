#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>

class TDataSet;
class TField;

/// What a bound control hears of its dataset, through a data source. Calls come on the main thread, in the order in
/// which the links were added. A link removes itself before it dies.
class DataLink
{
public:
    virtual ~DataLink() = default;
    /// The dataset opened or closed.
    virtual void ActiveChanged() {}
    /// Rows came, went or may all have changed; the cursor may stand elsewhere.
    virtual void DataSetChanged() {}
    /// The current row is another one.
    virtual void DataSetScrolled() {}
    /// A value of the current row changed, or its edit state.
    virtual void RecordChanged() {}
};

/// Joins a dataset to its detail datasets, to bound controls and to one handler. Borrows the dataset, which forgets it
/// or is forgotten when either dies.
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

    /// When the dataset opens, when the current row changes, on a refresh and when a value changes. Called after the
    /// links, so that details already stand on the new row.
    std::function<void()> OnDataChange;
    /// When the dataset's state changes.
    std::function<void()> OnStateChange;

    enum class Event { Active, DataSet, Scroll, Record, State };

private:
    friend class TDataSet;
    void Notify(Event event);

    TDataSet *m_dataSet = nullptr;
    QList<DataLink *> m_links;
};

/// A link that keeps its place at one data source, and leaves it when it dies. Borrows the data source, which may die
/// first.
class SourceLink : public DataLink
{
public:
    SourceLink() = default;
    ~SourceLink() override { SetDataSource(nullptr); }
    SourceLink(const SourceLink &) = delete;
    SourceLink &operator=(const SourceLink &) = delete;

    TDataSource *DataSource() const { return m_dataSource; }
    /// Leaves the data source that it was at; null for none.
    void SetDataSource(TDataSource *dataSource);
    /// The dataset, open or not; null if there is none.
    TDataSet *DataSet() const { return m_dataSource ? m_dataSource->DataSet() : nullptr; }
    /// The dataset while it is open, else null.
    TDataSet *OpenDataSet() const;

private:
    QPointer<TDataSource> m_dataSource;
};
