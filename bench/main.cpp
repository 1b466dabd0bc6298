#include "Measures.h"
#include "Suites.h"

#include "toolkit/BrowserControl.h"

#include <QApplication>

#include <clocale>
#include <cstdio>

int main(int argc, char **argv)
{
    std::setlocale(LC_CTYPE, "C.UTF-8");
    RegisterPageScheme();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QStringList names = QApplication::arguments().mid(1);
    QString jsonPath;
    if (const qsizetype option = names.indexOf(QStringLiteral("--json")); option >= 0 && option + 1 < names.size()) {
        jsonPath = names[option + 1];
        names.remove(option, 2);
    }
    RegisterReaderMeasures();
    RegisterProgramMeasures();
    if (RunMeasures(names, jsonPath))
        return 0;
    std::fprintf(stderr, "%s can't be written\n", qUtf8Printable(jsonPath));
    return 2;
}
