#include "toolkit/bound/FieldLink.h"

#include "stores/data/DataSet.h"

void FieldLink::SetDataSource(TDataSource *dataSource)
{
    SourceLink::SetDataSource(dataSource);
    if (dataSource)
        Show();
}

void FieldLink::SetFieldName(const QString &name)
{
    m_fieldName = name;
    Show();
}

TField *FieldLink::Field() const
{
    const TDataSet *dataSet = OpenDataSet();
    return dataSet ? dataSet->FindField(m_fieldName) : nullptr;
}

bool FieldLink::CanEdit() const
{
    const TDataSet *dataSet = OpenDataSet();
    return dataSet && Field() && (dataSet->State() == DataSetState::Insert || dataSet->RecNo() >= 0);
}

bool FieldLink::IsEditing() const
{
    const TDataSet *dataSet = OpenDataSet();
    return dataSet && (dataSet->State() == DataSetState::Edit || dataSet->State() == DataSetState::Insert);
}

void FieldLink::Write(const std::function<void(TField &)> &write)
{
    if (!CanEdit()) {
        Show();
        return;
    }
    try {
        m_isWriting = true;
        OpenDataSet()->Edit();
        if (TField *field = Field())
            write(*field);
        m_isWriting = false;
    } catch (...) {
        m_isWriting = false;
        Show();
        throw;
    }
}

void FieldLink::Show() const
{
    if (!m_isWriting)
        m_show();
}
