#include "marks/MarksWindow.h"
#include "presentation/Options.h"
#include "toolkit/skin/ProductSkins.h"
#include "toolkit/skin/SkinPainter.h"
#include "toolkit/skin/SkinStyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMap>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

constexpr double LeastText = 4.5;
constexpr double LeastDisabled = 3;

/// Full blocks reach the colour that thin antialiased letters only come near to; in this font they are as wide as
/// blanks.
QFont BlockFont()
{
    return QFont(u"DejaVu Sans Mono"_s, 10);
}

const QString Blocks(3, QChar(0x2588));
const QString Blanks(3, QChar(0x00A0));

/// The contrast of the worst line of pixels within a rectangle: its commonest pixel of text against what lies under it.
/// 0 where there is no text.
double WorstLine(const QImage &texts, const QImage &blanks, const QRect &rect)
{
    double worst = 0;
    const QRect inside = rect & texts.rect();
    const auto commonest = [&](int y) {
        QMap<std::pair<QRgb, QRgb>, int> counts;
        std::pair<QRgb, QRgb> most;
        for (int x = inside.left(); x <= inside.right(); ++x) {
            const std::pair<QRgb, QRgb> pixel(texts.pixel(x, y), blanks.pixel(x, y));
            if (pixel.first != pixel.second && ++counts[pixel] > counts.value(most))
                most = pixel;
        }
        return counts.value(most) < 4 ? 0 : Contrast(QColor(most.first), QColor(most.second));
    };
    // Lines at the upper and lower edge of the blocks are blended.
    for (int y = inside.top() + 1; y < inside.bottom(); ++y) {
        const double contrast = commonest(y);
        if (contrast > 0 && (worst == 0 || contrast < worst) && commonest(y - 1) > 0 && commonest(y + 1) > 0)
            worst = contrast;
    }
    return worst;
}

/// Skins the whole application for a test's time.
class SkinnedApplication
{
public:
    SkinnedApplication() { QApplication::setStyle(style); }
    ~SkinnedApplication()
    {
        QApplication::setStyle(m_name);
        QApplication::setPalette(m_palette);
    }
    void Wear(const Skin &skin)
    {
        style->SetSkin(skin);
        QApplication::setPalette(SkinPalette(skin));
        QApplication::sendPostedEvents(); // the windows hear of a palette by one
    }

    SkinStyle *style = new SkinStyle(ProductSkins()[0]); ///< the application's own

private:
    QString m_name = QApplication::style()->name();
    QPalette m_palette = QApplication::palette();
};

class SkinnedWindows : public MarksWindow
{
protected:
    ~SkinnedWindows() override { QFile::remove(DictionaryFile()); }
    QString DictionaryFile() const { return QFileInfo(program).path() + u"/PALIDICT.FDB"_s; }

    /// What shows a caption that may be replaced without a trace in the data.
    static QWidgetList Captioned(QWidget *form)
    {
        QWidgetList widgets = form->findChildren<QWidget *>();
        widgets.append(form);
        widgets.removeIf([form](const QWidget *widget) {
            const auto *tool = qobject_cast<const QToolButton *>(widget);
            return !widget->isVisible() || widget->window() != form ||
                   (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) ||
                   !(qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLabel *>(widget)) ||
                   widget->property("text").toString().isEmpty();
        });
        return widgets;
    }

    static QImage Shown(QWidget &form, const QWidgetList &widgets, const QString &text)
    {
        for (QWidget *widget : widgets) {
            widget->setFont(BlockFont());
            widget->setProperty("text", text.left(widget->property("text").toString().size()));
        }
        return form.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
};

/// Every kind of button in every state.
void AddButtons(QWidget &sample)
{
    auto *grid = new QGridLayout(&sample);
    for (int state = 0; state < 6; ++state) {
        auto *tool = new QToolButton;
        tool->setAutoRaise(true);
        tool->setToolButtonStyle(Qt::ToolButtonTextOnly);
        auto *flat = new QPushButton;
        flat->setFlat(true);
        const QList<QAbstractButton *> kinds{new QPushButton, flat, tool, new QCheckBox, new QRadioButton};
        for (QAbstractButton *button : kinds) {
            grid->addWidget(button, state, grid->count() % kinds.size());
            button->setObjectName(QString::number(state));
            button->setText(Blocks);
            button->setCheckable(true);
            button->setAutoExclusive(false);
            button->setAttribute(Qt::WA_UnderMouse, state == 1 || state == 2);
            button->setDown(state == 2);
            button->setChecked(state == 3);
            button->setEnabled(state != 4);
        }
        qobject_cast<QPushButton *>(kinds[0])->setDefault(state == 5);
    }
}

} // namespace

TEST_F(SkinnedWindows, EveryCaptionOfEveryWindowAndButton)
{
    EXPECT_TRUE(QFile::link(ProductFolder() + u"PALIDICT.FDB"_s, DictionaryFile()));
    SkinnedApplication application;
    Open();
    OpenMarks();
    Trigger("acSearchSutas");
    Trigger("acDictionary");
    TfrmOptions options(window.get());
    options.show();
    QMessageBox box(QMessageBox::Question, u"?"_s, Blocks, QMessageBox::Yes | QMessageBox::No);
    box.show();
    QDialog sample;
    AddButtons(sample);
    sample.show();
    QToolTip::showText(window->mapToGlobal(QPoint(40, 40)), Blocks, window.get());
    QWidgetList forms;
    for (QWidget *form : QApplication::topLevelWidgets()) {
        if (form->isVisible())
            forms.append(form);
    }
    ASSERT_GE(forms.size(), 8); // main window, marks, search, dictionary, options, message box, sample, tool tip
    QMap<const QWidget *, QSize> sizes;
    for (const Skin &skin : ProductSkins()) {
        SCOPED_TRACE(skin.name.toStdString());
        application.Wear(skin);
        for (QWidget *form : forms) {
            const QWidgetList widgets = Captioned(form);
            const QImage texts = Shown(*form, widgets, Blocks);
            const QImage blanks = Shown(*form, widgets, Blanks);
            for (const QWidget *widget : widgets) {
                const QRect rect(widget->mapTo(form, QPoint()), widget->size());
                EXPECT_GE(WorstLine(texts, blanks, rect), widget->isEnabled() ? LeastText : LeastDisabled)
                    << qPrintable(form->objectName()) << ' ' << qPrintable(widget->objectName());
                EXPECT_EQ(sizes.value(widget, widget->sizeHint()), widget->sizeHint()) << "a skin moves nothing";
                sizes[widget] = widget->sizeHint();
            }
        }
    }
    QToolTip::hideText();
}

TEST(SkinContrast, OfRowsInEveryState)
{
    SkinnedApplication application;
    // Four rows each: a plain one, a second, one chosen, one that cannot be used.
    QListWidget active, behind;
    for (QListWidget *list : {&active, &behind}) {
        list->setAlternatingRowColors(true);
        list->show();
    }
    QComboBox combo;
    const QList<QAbstractItemView *> views{&active, &behind, combo.view()};
    for (QAbstractItemView *view : views) {
        view->setFont(BlockFont());
        view->model()->insertRows(0, 4);
        view->setCurrentIndex(view->model()->index(2, 0));
    }
    for (QListWidget *list : {&active, &behind})
        list->item(3)->setFlags(Qt::NoItemFlags);
    combo.showPopup(); // lays the list out
    combo.hidePopup();
    QMenu menu;
    for (int item = 0; item < 4; ++item)
        menu.addAction(Blocks)->setEnabled(item != 3);
    menu.setFont(BlockFont());
    menu.setActiveAction(menu.actions().at(1));
    const auto grabs = [&](const QString &text) {
        QList<QImage> images;
        for (QAbstractItemView *view : views) {
            for (int row = 0; row < view->model()->rowCount(); ++row)
                view->model()->setData(view->model()->index(row, 0), text);
            images.append(view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32));
        }
        for (QAction *action : menu.actions())
            action->setText(text);
        images.append(menu.grab().toImage().convertToFormat(QImage::Format_RGB32));
        return images;
    };
    QApplication::setActiveWindow(&active);
    for (const Skin &skin : ProductSkins()) {
        SCOPED_TRACE(skin.name.toStdString());
        application.Wear(skin);
        const QList<QImage> texts = grabs(Blocks), blanks = grabs(Blanks);
        for (int row = 0; row < 4; ++row) {
            for (int view = 0; view < 4; ++view) {
                const QRect place = view < 3 ? views[view]->visualRect(views[view]->model()->index(row, 0))
                                             : menu.actionGeometry(menu.actions()[row]);
                EXPECT_GE(WorstLine(texts[view], blanks[view], place), row < 3 ? LeastText : LeastDisabled)
                    << view << ' ' << row;
            }
        }
    }
}
