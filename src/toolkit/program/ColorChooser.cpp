#include "toolkit/program/ColorChooser.h"

#include "base/Messages.h"

#include <QAbstractButton>
#include <QColorDialog>

using namespace Qt::StringLiterals;

namespace {

constexpr Message title{u"Chọn màu", u"Choose a color"};

} // namespace

std::optional<Colour> ChooseColour(QWidget *parent, Colour initial)
{
    QColorDialog dialog(QColor(ColorToHtml(initial)), parent);
    dialog.setObjectName(u"dlgColor"_s);
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.setWindowTitle(TextOrEnglish(title));
    // Its tool reads the screen, which desktops of today don't allow.
    for (auto *button : dialog.findChildren<QAbstractButton *>()) {
        if (button->text() == QColorDialog::tr("&Pick Screen Color"))
            button->hide();
    }
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QColor colour = dialog.currentColor();
    return Colour(colour.red()) | Colour(colour.green()) << 8 | Colour(colour.blue()) << 16;
}
