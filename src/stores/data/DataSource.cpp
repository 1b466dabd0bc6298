#include "stores/data/DataSource.h"

#include "stores/data/DataSet.h"

#include <QPointer>

#include <exception>

TDataSource::TDataSource(QObject *owner) : QObject(owner) {}

TDataSource::~TDataSource()
{
    if (m_dataSet)
        m_dataSet->m_dataSources.removeAll(this);
}

void TDataSource::SetDataSet(TDataSet *dataSet)
{
    if (dataSet == m_dataSet)
        return;
    if (m_dataSet)
        m_dataSet->m_dataSources.removeAll(this);
    m_dataSet = dataSet;
    if (m_dataSet)
        m_dataSet->m_dataSources.append(this);
    Notify(Event::Active);
}

void TDataSource::AddLink(DataLink *link)
{
    if (!m_links.contains(link))
        m_links.append(link);
}

void TDataSource::RemoveLink(DataLink *link)
{
    m_links.removeAll(link);
}

void TDataSource::Notify(Event event)
{
    // A listener may remove links, close the dataset or throw. The others still get the event, and the first exception
    // is passed on to the event's cause.
    const QPointer<TDataSource> self(this);
    std::exception_ptr failure;
    const auto guarded = [&failure](auto &&call) {
        try {
            call();
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    };
    const QList<DataLink *> links = m_links;
    for (DataLink *link : links) {
        if (!self || !m_links.contains(link))
            continue;
        guarded([&] {
            switch (event) {
            case Event::Active:
                return link->ActiveChanged();
            case Event::DataSet:
                return link->DataSetChanged();
            case Event::Scroll:
                return link->DataSetScrolled();
            case Event::Record:
            case Event::State:
                return link->RecordChanged();
            case Event::Fetched:
                return link->RowsFetched();
            }
        });
    }
    if (self && (event == Event::State || event == Event::Active) && OnStateChange)
        guarded([handler = OnStateChange] { handler(); });
    // The end of a dataset is a change of state and not of data; more rows change nothing in those that were there.
    const bool data = self && event != Event::State && event != Event::Fetched &&
                      (event != Event::Active || (m_dataSet && m_dataSet->Active()));
    if (data && OnDataChange)
        guarded([handler = OnDataChange] { handler(); });
    if (failure)
        std::rethrow_exception(failure);
}

void SourceLink::SetDataSource(TDataSource *dataSource)
{
    if (m_dataSource)
        m_dataSource->RemoveLink(this);
    m_dataSource = dataSource;
    if (m_dataSource)
        m_dataSource->AddLink(this);
}

TDataSet *SourceLink::OpenDataSet() const
{
    TDataSet *dataSet = DataSet();
    return dataSet && dataSet->Active() ? dataSet : nullptr;
}
