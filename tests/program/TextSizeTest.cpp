#include "program/ProgramRun.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(TextSize, GrowsWhatWasToldInPixelsWithIt)
{
    struct Row
    {
        QString what;
        QString atDesign, atHalfAsMuchMore;
    };
    const Row main[]{
        {u"frmMain minimumWidth"_s, u"800"_s, u"1200"_s},
        {u"bcbLanguage minimumWidth"_s, u"120"_s, u"180"_s},
        {u"lcTree width"_s, u"320"_s, u"480"_s},
    };
    const Row marks[]{
        {u"frmFocusHighlight width"_s, u"944"_s, u"1280"_s}, // no wider than the screen
        {u"gtvFocus DataRowHeight"_s, u"22"_s, u"33"_s},
        {u"lcLeft width"_s, u"281"_s, u"422"_s},
        {u"mmDesc height"_s, u"131"_s, u"197"_s},
        {u"edPriority minimumWidth"_s, u"130"_s, u"195"_s},
    };
    const ProductCopy product;
    product.WriteOptions();
    for (const bool isLarger : {false, true}) {
        ProgramRun program(product);
        // As on a desktop with larger text and no larger pixels.
        program.environment.insert(u"QT_ENABLE_HIGHDPI_SCALING"_s, u"0"_s);
        program.environment.insert(u"QT_FONT_DPI"_s, isLarger ? u"144"_s : u"96"_s);
        program.Open();
        const auto check = [&](const Row &row) {
            EXPECT_EQ(program.Send(u"get "_s + row.what), isLarger ? row.atHalfAsMuchMore : row.atDesign)
                << qPrintable(row.what);
        };
        for (const Row &row : main)
            check(row);
        program.Do({u"trigger acOrganization"_s, u"wait frmFocusHighlight"_s, u"pause 300"_s});
        for (const Row &row : marks)
            check(row);
        EXPECT_EQ(program.Quit(), 0);
    }
}
