#include "toolkit/browser/PageSaving.h"

#include "base/Messages.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/program/Doors.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
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

std::optional<SavingPlace> AskWhereToSave(QWidget *window, const QString &title, const QList<SavedForm> &forms)
{
    const auto chosenForm = [forms](const QString &filter) {
        const auto found =
            std::find_if(forms.begin(), forms.end(), [&](const SavedForm &form) { return form.filter == filter; });
        return found == forms.end() ? qsizetype(0) : found - forms.begin();
    };
    QStringList filters;
    for (const SavedForm &form : forms)
        filters += form.filter;
    auto *dialog = new QFileDialog(window, TextOrEnglish(saveTitle));
    const QPointer<QFileDialog> shown = dialog;
    dialog->setObjectName(QStringLiteral("dlgSave"));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(forms.first().suffixes.first());
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog, forms, chosenForm](const QString &filter) {
        dialog->setDefaultSuffix(forms.at(chosenForm(filter)).suffixes.first());
    });
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog->selectFile(FileNameFor(title));
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!shown)
        return {};
    SavingPlace place{dialog->selectedFiles().value(0), chosenForm(dialog->selectedNameFilter())};
    delete dialog;
    if (!isAccepted || place.path.isEmpty())
        return {};
    const QString suffix = QFileInfo(place.path).suffix().toLower();
    for (qsizetype form = 0; form < forms.size(); ++form)
        if (forms.at(form).suffixes.contains(suffix))
            place.form = form;
    return place;
}

void SaveBytes(const QString &path, const QByteArray &bytes)
{
    const QString failure = WriteWhole(path, bytes);
    if (!failure.isEmpty()) {
        const QString text =
            QStringLiteral("%1:\r%2\r%3").arg(TextOrEnglish(cannotSave), QDir::toNativeSeparators(path), failure);
        Doors().messageBox(QStringLiteral("Lumivara 1.0"), text, BoxButtons::Ok, BoxIcon::Error);
    }
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
    const QList<SavedForm> forms{{TextOrEnglish(pageFiles), {QStringLiteral("html"), QStringLiteral("htm")}},
                                 {TextOrEnglish(textFiles), {QStringLiteral("txt")}}};
    const auto place = AskWhereToSave(control.window(), title.isEmpty() ? fallbackTitle : title, forms);
    if (place)
        SaveBytes(place->path, place->form == 0 ? source : text.toUtf8());
}
