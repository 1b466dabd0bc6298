#include "base/InterfaceLanguage.h"

int InterfaceLang = 0;
