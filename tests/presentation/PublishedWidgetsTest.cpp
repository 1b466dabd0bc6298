#include "presentation/Published.h"

#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gmock/gmock.h>

namespace {

TEST(PublishedWidgets, CaptionsHintsAndLinesReachTheToolkit)
{
    QWidget window;
    QAction action;
    QPushButton button;
    QLabel label;
    QGroupBox group;
    QMenu menu;
    QLineEdit edit;
    QPlainTextEdit memo;
    const struct
    {
        QObject *object;
        QString name;
        const char *property;
    } rows[] = {
        {&window, u"Caption"_qs, "windowTitle"},    {&window, u"Hint"_qs, "toolTip"}, {&action, u"Caption"_qs, "text"},
        {&action, u"Hint"_qs, "toolTip"},           {&button, u"Caption"_qs, "text"}, {&label, u"Caption"_qs, "text"},
        {&group, u"Caption"_qs, "title"},           {&menu, u"Caption"_qs, "title"},  {&edit, u"Text"_qs, "text"},
        {&edit, u"TextHint"_qs, "placeholderText"}, {&memo, u"Lines"_qs, "plainText"}};
    for (const auto &row : rows) {
        FindPublished(row.object, row.name).Write(u"of "_qs + row.name);
        EXPECT_EQ(row.object->property(row.property).toString(), u"of "_qs + row.name) << row.property;
        EXPECT_EQ(FindPublished(row.object, row.name).Read(), u"of "_qs + row.name) << row.property;
    }
    FindPublished(&label, u"Caption"_qs).Write(u"two\r\nlines"_qs);
    EXPECT_EQ(label.text(), u"two\nlines"_qs);
}

TEST(PublishedWidgets, AComboKeepsItsChoiceAndIsSilent)
{
    QComboBox combo;
    combo.addItems({u"một"_qs, u"hai"_qs, u"ba"_qs});
    combo.setCurrentIndex(1);
    int told = 0;
    QObject::connect(&combo, &QComboBox::currentIndexChanged, [&told] { ++told; });
    QObject::connect(&combo, &QComboBox::currentTextChanged, [&told] { ++told; });
    const PublishedText items = FindPublished(&combo, u"Properties.Items"_qs);
    EXPECT_EQ(items.Read(), u"một\r\nhai\r\nba"_qs);
    const struct
    {
        QString text, current;
        int count, index;
    } rows[] = {{u"one\r\ntwo\r\nthree"_qs, u"two"_qs, 3, 1},
                {u"one\r\ntwo"_qs, u"two"_qs, 2, 1},
                {u"a\nb\nc\nd\n"_qs, u"b"_qs, 4, 1},
                {u"only"_qs, {}, 1, -1},
                {{}, {}, 0, -1},
                {u"again\r\nmore"_qs, {}, 2, -1}};
    for (const auto &row : rows) {
        items.Write(row.text);
        EXPECT_EQ(combo.count(), row.count) << row.text.toStdString();
        EXPECT_EQ(combo.currentIndex(), row.index) << row.text.toStdString();
        EXPECT_EQ(combo.currentText(), row.current);
    }
    EXPECT_EQ(told, 0);
}

} // namespace
