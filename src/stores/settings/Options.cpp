#include "stores/settings/Options.h"

QString AppPath;
QString FontName;
QString LastWord;
int DictionaryKind = 0;
bool MultiDictionary = false;
int GlobalActiveStyle = 0;
QString GlobalActiveName;
int CollectionMode = 0;
