#include "toolkit/browser/PageSaving.h"

#include "base/Messages.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/program/Doors.h"

#include <QDir>
#include <QFileDialog>
#include <QPointer>
#include <QSaveFile>
#include <QStandardPaths>

#include <cerrno>

namespace {

constexpr qsizetype longestName = 80; // characters; a letter has up to four bytes, a name 255

constexpr Message saveTitle{u"Lưu thành tập tin", u"Save to a file"};
constexpr Message pageFiles{u"Trang HTML (*.html *.htm)", u"HTML page (*.html *.htm)"};
constexpr Message textFiles{u"Văn bản (*.txt)", u"Plain text (*.txt)"};
constexpr Message cannotSave{u"Không lưu được tập tin", u"The file could not be saved"};

} // namespace

QString FileNameFor(const QString &title)
{
    QString name;
    for (const QChar character : title) {
        const bool isBad = character.unicode() < 0x20 || character.unicode() == 0x7F ||
                           QStringView(u"\\/:*?\"<>|").contains(character);
        name += isBad ? QLatin1Char(' ') : character;
    }
    name = name.simplified().left(longestName);
    if (!name.isEmpty() && name.back().isHighSurrogate())
        name.chop(1);
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
        name.chop(1);
    return name.isEmpty() ? QStringLiteral("Lumivara") : name;
}

QString WriteWhole(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    // Unbuffered, because commit() does not notice a failure to flush the buffer.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file.errorString();
    if (file.write(bytes) == bytes.size() && file.commit())
        return {};
    // A short write sets no error.
    return file.error() == QFileDevice::NoError ? qt_error_string(ENOSPC) : file.errorString();
}

void SavePage(TBrowserControl &control, const QString &fallbackTitle)
{
    const QPointer<TBrowserControl> self = &control;
    // The page at this moment, whatever is opened while the dialog is open.
    const QByteArray source = control.Source();
    const QString title = control.Evaluate(QStringLiteral("document.title")).toString().trimmed();
    if (!self)
        return;
    const QString text = control.Evaluate(ScriptCall(u"plainText")).toString();
    if (!self)
        return;

    const QString textFilter = TextOrEnglish(textFiles);
    auto *dialog = new QFileDialog(control.window(), TextOrEnglish(saveTitle));
    const QPointer<QFileDialog> shown = dialog;
    dialog->setObjectName(QStringLiteral("dlgSave"));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters({TextOrEnglish(pageFiles), textFilter});
    dialog->setDefaultSuffix(QStringLiteral("html"));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog, textFilter](const QString &filter) {
        dialog->setDefaultSuffix(filter == textFilter ? QStringLiteral("txt") : QStringLiteral("html"));
    });
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog->selectFile(FileNameFor(title.isEmpty() ? fallbackTitle : title));
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!shown)
        return;
    const QString path = dialog->selectedFiles().value(0);
    const bool isText = path.endsWith(QStringLiteral(".txt"), Qt::CaseInsensitive) ||
                        (dialog->selectedNameFilter() == textFilter && !path.contains(QStringLiteral(".htm")));
    delete dialog;
    if (!isAccepted || path.isEmpty())
        return;
    const QString failure = WriteWhole(path, isText ? text.toUtf8() : source);
    if (!failure.isEmpty()) {
        const QString text =
            QStringLiteral("%1:\r%2\r%3").arg(TextOrEnglish(cannotSave), QDir::toNativeSeparators(path), failure);
        Doors().messageBox(QStringLiteral("Lumivara 1.0"), text, BoxButtons::Ok, BoxIcon::Error);
    }
}
