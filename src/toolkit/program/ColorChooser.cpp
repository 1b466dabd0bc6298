#include "toolkit/program/ColorChooser.h"

#include "base/InterfaceLanguage.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QHash>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

QString Plain(QString text)
{
    return text.remove(u'&');
}

/// The Vietnamese for a text of Qt's dialog, which comes in English only.
QString Vietnamese(const QString &text)
{
    static const QHash<QString, QString> words{
        {u"Basic colors"_s, u"&Màu cơ bản"_s},
        {u"Custom colors"_s, u"Màu &riêng"_s},
        {u"Add to Custom Colors"_s, u"&Thêm vào màu riêng"_s},
        {u"Hue:"_s, u"&Sắc:"_s},
        {u"Sat:"_s, u"&Độ đậm:"_s},
        {u"Val:"_s, u"Độ sán&g:"_s},
        {u"Red:"_s, u"Đỏ:"_s},
        {u"Green:"_s, u"&Xanh lục:"_s},
        {u"Blue:"_s, u"Xanh &lam:"_s},
        {u"OK"_s, u"Đồ&ng ý"_s},
        {u"Cancel"_s, u"&Bỏ qua"_s},
    };
    return words.value(Plain(text), text);
}

} // namespace

std::optional<Colour> ChooseColour(QWidget *parent, Colour initial)
{
    QColorDialog dialog(QColor(ColorToHtml(initial)), parent);
    dialog.setObjectName(u"dlgColor"_s);
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    const bool isVietnamese = InterfaceLang == 0;
    dialog.setWindowTitle(isVietnamese ? u"Chọn màu"_s : u"Choose a color"_s);
    for (auto *button : dialog.findChildren<QAbstractButton *>()) {
        // It reads the screen, which current desktops don't allow.
        if (Plain(button->text()) == "Pick Screen Color"_L1)
            button->hide();
        else if (isVietnamese)
            button->setText(Vietnamese(button->text()));
    }
    if (isVietnamese) {
        for (auto *label : dialog.findChildren<QLabel *>())
            label->setText(Vietnamese(label->text()));
    }
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QColor colour = dialog.currentColor();
    return Colour(colour.red()) | Colour(colour.green()) << 8 | Colour(colour.blue()) << 16;
}
