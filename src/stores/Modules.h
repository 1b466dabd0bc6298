#pragma once

class TfrmKeloraDM;
class TfrmClientsDM;
class TfrmDictionaryDM;

/// The modules that exist for the whole run. Null until the start has made them; main() owns them.
extern TfrmKeloraDM *frmKeloraDM;
extern TfrmClientsDM *frmClientsDM;
extern TfrmDictionaryDM *frmDictionaryDM;
