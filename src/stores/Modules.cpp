#include "stores/Modules.h"

TfrmKeloraDM *frmKeloraDM = nullptr;
TfrmClientsDM *frmClientsDM = nullptr;
TfrmDictionaryDM *frmDictionaryDM = nullptr;
