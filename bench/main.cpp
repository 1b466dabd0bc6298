#include "BenchDictionary.h"
#include "Measures.h"
#include "Suites.h"

#include "common/Console.h"
#include "common/Tool.h"
#include "lumivara-data/Verbs.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/StartUp.h"

#include <QApplication>
#include <QTimer>

#include <clocale>
#include <cstdio>
#include <string_view>

int main(int argc, char **argv)
{
    // An import reads an older file in a process of its own, which is this program again.
    if (argc > 1 && std::string_view(argv[1]) == SealedVerb) {
        QCoreApplication application(argc, argv);
        std::setlocale(LC_CTYPE, "C.UTF-8");
        Console console(QStringLiteral("sealed"));
        return RunTool(DataVerbs(), QCoreApplication::arguments().mid(1), console);
    }
    PrepareProcess();
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
    RegisterColourMeasures();
    RegisterProgramMeasures();
    RegisterSearchMeasures();
    RegisterEverywhereMeasures();
    RegisterLanguageMeasures();
    RegisterDictionaryMeasures();
    RegisterDictionaryIoMeasures();
    RegisterFormsMeasures();
    RegisterMarksMeasures();
    RegisterPrintingMeasures();
    RegisterSkinMeasures();
    RegisterPostMeasures();
    RegisterCanonIoMeasures();
    // Inside the event loop, as in the program: the engine runs slowly without one.
    QTimer::singleShot(0, &application, [&] {
        if (names.size() == 2 && names.front() == QStringLiteral("--list-memory")) {
            std::printf("%f\n", MemoryAtEndOfList(names.back()));
            QApplication::exit();
            return;
        }
        const bool isWritten = RunMeasures(names, jsonPath);
        if (!isWritten)
            std::fprintf(stderr, "%s can't be written\n", qUtf8Printable(jsonPath));
        QApplication::exit(isWritten ? 0 : 2);
    });
    return QApplication::exec();
}
