#pragma once

class TfrmKeloraDM;
class TfrmClientsDM;
class TfrmDictionaryDM;

/// The modules that live for the whole run, each reached through one pointer. Null until the start has made them; the
/// start owns them.
extern TfrmKeloraDM *frmKeloraDM;
extern TfrmClientsDM *frmClientsDM;
extern TfrmDictionaryDM *frmDictionaryDM;
