#include "toolkit/program/QtWords.h"
#include "base/InterfaceLanguage.h"
#include "support/WaitFor.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabWidget>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// Names of folders and of paper, and rows by columns: the same in every language.
const QStringList combosOfNames{u"lookInCombo"_s, u"pageSizeCombo"_s, u"pagesPerSheetCombo"_s};

QStringList ActionTexts(const QWidget &widget)
{
    QStringList texts;
    for (const QAction *action : widget.actions())
        texts << action->text().section(u'\t', 0, 0) << action->toolTip().section(u'\t', 0, 0);
    return texts;
}

/// What a reader may come to see of a window, also on pages that are hidden now; not what stands in edits.
QStringList TextsOf(QWidget &window)
{
    QStringList texts{window.windowTitle()};
    QWidgetList widgets = window.findChildren<QWidget *>();
    widgets.append(&window);
    for (QWidget *widget : std::as_const(widgets)) {
        if (widget != &window && widget->isWindow())
            continue;
        texts << widget->toolTip() << widget->whatsThis() << widget->accessibleName() << ActionTexts(*widget);
        if (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QLabel *>(widget))
            texts << widget->property("text").toString();
        else if (auto *group = qobject_cast<QGroupBox *>(widget))
            texts << group->title();
        else if (auto *header = qobject_cast<QHeaderView *>(widget); header && header->model()) {
            for (int at = 0; at < header->count(); ++at)
                texts << header->model()->headerData(at, Qt::Horizontal).toString();
        } else if (auto *tabs = qobject_cast<QTabBar *>(widget)) {
            for (int at = 0; at < tabs->count(); ++at)
                texts << tabs->tabText(at);
        } else if (auto *combo = qobject_cast<QComboBox *>(widget);
                   combo && !combosOfNames.contains(combo->objectName())) {
            for (int at = 0; at < combo->count(); ++at)
                texts << combo->itemText(at);
        }
    }
    return texts;
}

/// The texts of the first menu or window of a kind that `open` brings up, closed again.
class Popup : public QObject
{
public:
    Popup(const char *kind, const std::function<void()> &open) : m_kind(kind)
    {
        qApp->installEventFilter(this);
        open();
        EXPECT_TRUE(WaitFor([&] { return !m_texts.isEmpty(); })) << kind;
    }
    QStringList Texts() const { return m_texts; }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *window = qobject_cast<QWidget *>(watched);
        if (m_texts.isEmpty() && event->type() == QEvent::Show && window && window->inherits(m_kind)) {
            m_texts = TextsOf(*window);
            QMetaObject::invokeMethod(window, &QWidget::close, Qt::QueuedConnection);
        }
        return false;
    }

    const char *m_kind;
    QStringList m_texts;
};

QStringList MenuOf(QWidget &widget)
{
    widget.show();
    return Popup("QMenu",
                 [&] {
                     QContextMenuEvent event(QContextMenuEvent::Mouse, {3, 3}, widget.mapToGlobal(QPoint(3, 3)));
                     QCoreApplication::sendEvent(&widget, &event);
                 })
        .Texts();
}

template <typename Edit>
QStringList EditTexts()
{
    Edit edit;
    const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
    return TextsOf(*menu);
}

template <typename Widget>
QStringList MenuTexts()
{
    Widget widget;
    return MenuOf(widget);
}

QStringList ScrollBarTexts()
{
    QScrollBar upright(Qt::Vertical);
    QScrollBar level(Qt::Horizontal);
    return MenuOf(upright) + MenuOf(level);
}

QStringList LinkTexts()
{
    QLabel label(u"<a href='x'>x</a>"_s);
    label.setTextInteractionFlags(Qt::TextBrowserInteraction);
    QStringList texts = MenuOf(label);
    texts.removeOne(label.text());
    return texts;
}

QStringList BoxTexts()
{
    QMessageBox box;
    for (int button = QMessageBox::FirstButton; button <= QMessageBox::LastButton; button <<= 1)
        box.addButton(static_cast<QMessageBox::StandardButton>(button));
    box.setDetailedText(u"1"_s);
    return TextsOf(box);
}

QStringList ColorTexts()
{
    QColorDialog dialog;
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.setOption(QColorDialog::ShowAlphaChannel);
    dialog.ensurePolished();
    return TextsOf(dialog);
}

QStringList FileTexts()
{
    QStringList texts;
    for (const auto mode : {QFileDialog::AcceptOpen, QFileDialog::AcceptSave}) {
        QFileDialog dialog;
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setAcceptMode(mode);
        auto *list = dialog.findChild<QListView *>(u"listView"_s);
        texts += TextsOf(dialog);
        texts += Popup("QMenu", [&] { emit list->customContextMenuRequested({}); }).Texts();
    }
    return texts;
}

QStringList PageSetupTexts()
{
    QPrinter printer;
    QPageSetupDialog dialog(&printer);
    return TextsOf(dialog);
}

QStringList PreviewTexts()
{
    QPrinter printer;
    QPrintPreviewDialog dialog(&printer);
    return TextsOf(dialog);
}

QStringList PrintTexts()
{
    QPrinter printer;
    QPrintDialog dialog(&printer);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    auto *properties = dialog.findChild<QPushButton *>(u"properties"_s);
    return TextsOf(dialog) + Popup("QPrintPropertiesDialog", [&] { properties->click(); }).Texts();
}

/// What both languages say alike.
const QStringList namesOfAll{u"&HTML:"_s, u"mm"_s, u"Pica (P̸)"_s, u"Didot (DD)"_s, u"Cicero (CC)"_s};

QStringList Told(QStringList (*texts)(), int language)
{
    const QScopedValueRollback inLanguage(InterfaceLang, language);
    QStringList told = texts();
    told.removeIf([](const QString &text) {
        return std::none_of(text.begin(), text.end(), [](QChar letter) { return letter.isLetter(); }) ||
               namesOfAll.contains(text);
    });
    return told;
}

} // namespace

TEST(QtWords, LeaveNoEnglishInVietnamese)
{
    const struct
    {
        const char *kind;
        QStringList (*texts)();
        QString vietnamese, english; ///< one of them
    } rows[]{
        {"line edit", EditTexts<QLineEdit>, u"&Hoàn tác"_s, u"&Undo"_s},
        {"text edit", EditTexts<QPlainTextEdit>, u"&Chọn tất cả"_s, u"Select All"_s},
        {"link", LinkTexts, u"Sao chép địa chỉ &liên kết"_s, u"Copy &Link Location"_s},
        {"spin box", MenuTexts<QSpinBox>, u"Tăn&g"_s, u"&Step up"_s},
        {"scroll bars", ScrollBarTexts, u"Sang mép trái"_s, u"Left edge"_s},
        {"message box", BoxTexts, u"&Có"_s, u"&Yes"_s},
        {"colours", ColorTexts, u"Độ sán&g:"_s, u"&Val:"_s},
        {"files", FileTexts, u"Ngày sửa"_s, u"Date Modified"_s},
        {"page setup", PageSetupTexts, u"lề trên"_s, u"top margin"_s},
        {"preview", PreviewTexts, u"Hai trang đối nhau"_s, u"Show facing pages"_s},
        {"print", PrintTexts, u"Xếp theo bộ"_s, u"Collate"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.kind);
        const QStringList english = Told(row.texts, 1);
        const QStringList vietnamese = Told(row.texts, 0);
        EXPECT_TRUE(english.contains(row.english)) << qUtf8Printable(english.join(u'|'));
        EXPECT_TRUE(vietnamese.contains(row.vietnamese)) << qUtf8Printable(vietnamese.join(u'|'));
        for (const QString &text : vietnamese)
            EXPECT_FALSE(english.contains(text)) << '"' << qUtf8Printable(text) << "\" is English";
    }
}

TEST(QtWords, ChangeInAnOpenWindowWithTheLanguage)
{
    QColorDialog dialog;
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.show();
    for (const auto &[language, text] : {std::pair(1, u"&Custom colors"_s), {0, u"Màu &riêng"_s}}) {
        InterfaceLang = language;
        ShowQtWords();
        EXPECT_TRUE(WaitFor([&, text = text] { return TextsOf(dialog).contains(text); })) << language;
    }
}
