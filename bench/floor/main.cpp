#include "Painted.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserProfile.h"
#include "toolkit/program/Fonts.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSocketNotifier>
#include <QWebEnginePage>

#include <cstdio>
#include <unistd.h>
#include <utility>

// What the program is measured against: one application object, one view, our scheme handler and the same settings of
// the engine, and nothing else. Shows the page of the file named; then, for each file named on a line of standard
// input, shows that and prints the milliseconds until it was painted.

namespace {

QByteArray Bytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int main(int argc, char **argv)
{
    RegisterPageScheme();
    QApplication application(argc, argv);
    InstallFontSubstitutes();
    const std::shared_ptr<BrowserProfile> profile = BrowserProfile::Shared();
    QWebEngineView view(new QWebEnginePage(profile.get()), nullptr);
    view.setObjectName(QStringLiteral("ebContent"));
    view.page()->setParent(&view);
    view.resize(1008, 730);
    view.showMaximized();

    QUrl shown;
    const auto load = [&](const QString &path) {
        const QUrl old = shown;
        shown = profile->Pages().Publish(0, Bytes(path));
        view.load(shown);
        profile->Pages().Withdraw(old);
    };

    QElapsedTimer clock;
    bool isFirst = true;
    PaintedProbe probe(&view, [&] {
        // The first one is told by the plug-in, as it is for the program.
        if (!std::exchange(isFirst, false)) {
            std::printf("%.3f\n", static_cast<double>(clock.nsecsElapsed()) / 1e6);
            std::fflush(stdout);
        }
    });
    QByteArray input;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &view, [&] {
        char buffer[4096];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0)
            return QApplication::exit(0);
        input.append(buffer, count);
        if (const qsizetype end = input.indexOf('\n'); end >= 0) {
            const QString path = QString::fromUtf8(input.left(end));
            input.remove(0, end + 1);
            clock.start();
            load(path);
        }
    });
    load(QApplication::arguments().value(1));
    return QApplication::exec();
}
