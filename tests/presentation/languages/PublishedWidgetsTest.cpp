#include "presentation/languages/Published.h"

#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gmock/gmock.h>

TEST(PublishedWidgets, CaptionsHintsAndLinesReachTheToolkit)
{
    QWidget window;
    auto *label = new QLabel(&window);
    const std::tuple<QObject *, QString, const char *> rows[]{
        {&window, u"Caption"_qs, "windowTitle"},
        {new QAction(&window), u"Hint"_qs, "toolTip"},
        {new QPushButton(&window), u"Caption"_qs, "text"},
        {new QGroupBox(&window), u"Caption"_qs, "title"},
        {new QMenu(&window), u"Caption"_qs, "title"},
        {new QLineEdit(&window), u"TextHint"_qs, "placeholderText"},
        {new QPlainTextEdit(&window), u"Lines"_qs, "plainText"}};
    for (const auto &[object, name, property] : rows) {
        FindPublished(object, name).Write(u"of "_qs + name);
        EXPECT_EQ(object->property(property).toString(), u"of "_qs + name) << property;
        EXPECT_EQ(FindPublished(object, name).Read(), u"of "_qs + name) << property;
    }
    FindPublished(label, u"Caption"_qs).Write(u"two\r\nlines"_qs);
    EXPECT_EQ(label->text(), u"two\nlines"_qs);
}

TEST(PublishedWidgets, AComboKeepsItsChoiceAndIsSilent)
{
    QComboBox combo;
    combo.addItems({u"một"_qs, u"hai"_qs, u"ba"_qs});
    combo.setCurrentIndex(1);
    int told = 0;
    QObject::connect(&combo, &QComboBox::currentIndexChanged, [&told] { ++told; });
    const PublishedText items = FindPublished(&combo, u"Properties.Items"_qs);
    EXPECT_EQ(items.Read(), u"một\r\nhai\r\nba"_qs);
    // The new lines, the current one and the choice.
    const std::tuple<QString, QString, int> rows[]{{u"one\r\ntwo\r\nthree"_qs, u"two"_qs, 1},
                                                   {u"a\nb\nc\nd\n"_qs, u"b"_qs, 1},
                                                   {u"only"_qs, {}, -1},
                                                   {{}, {}, -1},
                                                   {u"again\r\nmore"_qs, {}, -1}};
    for (const auto &[text, current, index] : rows) {
        items.Write(text);
        EXPECT_EQ(combo.count(), text.trimmed().count(u'\n') + !text.isEmpty()) << text.toStdString();
        EXPECT_EQ(combo.currentText() + QString::number(combo.currentIndex()), current + QString::number(index));
    }
    EXPECT_EQ(told, 0);
}
