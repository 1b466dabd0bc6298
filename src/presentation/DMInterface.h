#pragma once

#include <QObject>

class TcxHintStyleController;
class TcxLookAndFeelController;
class TcxStyle;
class TcxStyleRepository;
class TdxLayoutLookAndFeelList;
class TdxLayoutSkinLookAndFeel;

/// The look that all windows share. Exists for the whole run; the first of the modules.
class TInterfaceDM : public QObject
{
    Q_OBJECT
public:
    explicit TInterfaceDM(QObject *owner = nullptr);

    /// Sets the base font of the application, lets colour values resolve system colours, and fills the grid styles.
    void DataModuleCreate();

    TdxLayoutLookAndFeelList *const dxLayoutLookAndFeelListGobal;
    TdxLayoutSkinLookAndFeel *const SkinLookAndFeel; ///< used by every layout of the program
    TcxHintStyleController *const cxHintStyleController1;
    TcxLookAndFeelController *const cxLookAndFeelController1;
    TcxStyleRepository *const GlobalStyleRepository;
    /// The grid styles; no grid uses one.
    TcxStyle *const Supplement;
    TcxStyle *const SupplementOwner;
    TcxStyle *const SelectedGridRow;
    TcxStyle *const ContentEven;
    TcxStyle *const ContentOdd;
    TcxStyle *const BkgNoData;
};

/// The only instance; null until the start has made it.
extern TInterfaceDM *InterfaceDM;
