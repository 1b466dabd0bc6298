#include "base/Utf8Locale.h"

#include <QByteArray>

#include <clocale>
#include <langinfo.h>

namespace {

bool IsUtf8Locale()
{
    return QByteArray(nl_langinfo(CODESET)).compare("UTF-8", Qt::CaseInsensitive) == 0;
}

} // namespace

/// Through the environment, because parts of Qt set the locale from it again when they need it.
void ForceUtf8Environment()
{
    std::setlocale(LC_ALL, "");
    if (IsUtf8Locale())
        return;
    const QByteArray everything = qgetenv("LC_ALL");
    if (!everything.isEmpty()) {
        qputenv("LANG", everything);
        qunsetenv("LC_ALL");
    }
    qputenv("LC_CTYPE", "C.UTF-8");
}

void SettleLocale()
{
    // A language that is not installed fails as a whole in the application object, and takes LC_CTYPE with it.
    if (!IsUtf8Locale())
        std::setlocale(LC_CTYPE, "C.UTF-8");
}
