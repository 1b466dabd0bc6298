#pragma once

#include <QObject>

/// The look that all windows share. Lives for the whole run, the first of the modules.
class TInterfaceDM : public QObject
{
    Q_OBJECT
public:
    explicit TInterfaceDM(QObject *owner = nullptr);

    /// Sets style, colours and base font of the application and lets colour values resolve system colours.
    void DataModuleCreate();
};

/// The one module; null until the start has made it.
extern TInterfaceDM *InterfaceDM;
