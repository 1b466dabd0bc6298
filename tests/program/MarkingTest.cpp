#include "program/ProgramRun.h"

#include "stores/FIBDataSet.h"
#include "stores/KeloraDM.h"

#include <gmock/gmock.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int Rounds = 50;
constexpr int Tries = 200; ///< of a step that the other copy stands in the way of
constexpr int Polls = 400;

/// The text of a box that came up, which is answered, or nothing once the condition holds.
QString BoxOr(ProgramRun &program, const std::function<bool()> &holds)
{
    for (int poll = 0; poll < Polls; ++poll) {
        if (program.Send(u"get msgBox visible"_s) == u"true") {
            const QString text = program.Send(u"get msgBox text"_s);
            program.Send(u"answer ok"_s);
            program.Send(u"wait-gone msgBox"_s);
            return text;
        }
        if (holds())
            return {};
        program.Send(u"pause 20"_s);
    }
    return u"nothing happens"_s;
}

bool IsEditorOpen(ProgramRun &program)
{
    return program.Send(u"get frmFocusEdit visible"_s) == u"true";
}

/// Repeats a step until no box comes of it, and gives the texts of the boxes.
QStringList Persist(ProgramRun &program, const QString &command, const std::function<bool()> &holds)
{
    QStringList texts;
    for (int turn = 0; turn < Tries; ++turn) {
        EXPECT_EQ(program.Send(command).toStdString(), "") << qPrintable(command);
        const QString text = BoxOr(program, holds);
        if (text.isEmpty())
            return texts;
        texts.append(text);
        program.Send(u"pause 50"_s);
    }
    return texts << u"gave up"_s;
}

void Begin(ProgramRun &program)
{
    program.Start();
    for (const QString &command : {u"wait frmMain"_s, u"wait-page ebContent"_s, u"select-row 1101"_s,
                                   u"wait-page ebContent"_s, u"trigger acSelectAll"_s, u"pause 300"_s})
        EXPECT_EQ(program.Send(command), QString());
}

QStringList Mark(ProgramRun &program, const QString &title)
{
    QStringList boxes = Persist(program, u"trigger acFocusHighlight"_s, [&] { return IsEditorOpen(program); });
    program.Send(u"clear edNameFocus"_s);
    program.Send(u"type edNameFocus "_s + title);
    boxes += Persist(program, u"click btnOK"_s, [&] { return !IsEditorOpen(program); });
    return boxes;
}

/// Marks again and again, and notes the boxes.
void MarkingCopy(const ProductCopy &product, QStringList &boxes)
{
    ProgramRun program(product);
    Begin(program);
    for (int round = 1; round <= Rounds; ++round)
        boxes += Mark(program, u"marked-%1"_s.arg(round));
    EXPECT_EQ(program.Quit(), 0);
}

/// Makes one mark and changes its note again and again.
void EditingCopy(const ProductCopy &product, QStringList &boxes)
{
    ProgramRun program(product);
    Begin(program);
    boxes += Mark(program, u"edited"_s);
    EXPECT_EQ(program.Send(u"trigger acOrganization"_s), QString());
    EXPECT_EQ(program.Send(u"wait frmFocusHighlight"_s), QString());
    EXPECT_EQ(program.Send(u"type edSearch edited"_s), QString());
    EXPECT_EQ(program.Send(u"get edTitleFocus text"_s).toStdString(), "edited");
    for (int round = 1; round <= Rounds; ++round) {
        // Room for the update cycle, which enables the command.
        for (const QString &command :
             {u"clear mmDesc"_s, u"type mmDesc note-%1"_s.arg(round), u"focus mmDesc"_s, u"pause 50"_s})
            EXPECT_EQ(program.Send(command), QString()) << qPrintable(command);
        boxes += Persist(program, u"trigger DataSetPost1"_s,
                         [&] { return program.Send(u"get DataSetPost1 enabled"_s) == u"false"; });
    }
    EXPECT_EQ(program.Quit(), 0);
}

} // namespace

TEST(Marking, TwoCopiesAtOnceLoseAndDoubleNothing)
{
    const ProductCopy product;
    QStringList markingBoxes, editingBoxes;
    std::thread marking([&] { MarkingCopy(product, markingBoxes); });
    std::thread editing([&] { EditingCopy(product, editingBoxes); });
    marking.join();
    editing.join();
    for (const QString &text : markingBoxes + editingBoxes) {
        EXPECT_TRUE(text.contains(u"another copy of the program"_s) || text.contains(u"một bản khác"_s) ||
                    text.contains(u"violation of PRIMARY"_s) || text.contains(u"lock conflict"_s) ||
                    text.contains(u"deadlock"_s))
            << qPrintable(text);
    }

    TpFIBDatabase database;
    TpFIBTransaction transaction;
    PrepareConnection(database, transaction, product.File(u"TARUNECLIENT.FDB"_s), product.File(u"Lumivara"_s));
    database.SetConnected(true);
    transaction.SetActive(true);
    TpFIBDataSet rows;
    rows.SetDatabase(&database);
    rows.SelectSQL() = QStringList{u"select NAME_FOC, DESC_FOC, TEXT_FOC, NIC_SUT from SUTTA_TEXT_FOCUS"_s};
    QStringList found, expected{u"edited note-%1"_s.arg(Rounds)};
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        found.append(
            (rows.FieldByName(u"NAME_FOC"_s).AsString() + u' ' + rows.FieldByName(u"DESC_FOC"_s).AsString()).trimmed());
        const QByteArray excerpt = rows.FieldByName(u"TEXT_FOC"_s).AsBytes();
        EXPECT_TRUE(excerpt.startsWith("\xEF\xBB\xBF<HTML>\r\n") && excerpt.endsWith("</HTML>\r\n"));
        EXPECT_TRUE(QString::fromUtf8(excerpt).contains(u"Verañjakaṇḍaṃ"_s));
    }
    for (int round = 1; round <= Rounds; ++round)
        expected.append(u"marked-%1"_s.arg(round));
    found.sort();
    expected.sort();
    EXPECT_EQ(found, expected);
}
