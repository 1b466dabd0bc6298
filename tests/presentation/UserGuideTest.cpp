#include "support/TestSupport.h"

#include <QPdfBookmarkModel>
#include <QPdfDocument>
#include <QPdfSelection>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(UserGuide, OpensWithTitleOutlineAndBothLanguages)
{
    QPdfDocument guide;
    ASSERT_EQ(guide.load(ProductFolder() + u"LumivaraUserGuide.pdf"_s), QPdfDocument::Error::None);
    EXPECT_EQ(guide.metaData(QPdfDocument::MetaDataField::Title).toString(),
              u"Lumivara: Hướng dẫn sử dụng · User guide"_s);

    QStringList pages;
    for (int page = 0; page < guide.pageCount(); ++page)
        pages.append(guide.getAllText(page).text().normalized(QString::NormalizationForm_C).simplified());

    // Each entry of the outline leads to the page that has its heading.
    QPdfBookmarkModel outline;
    outline.setDocument(&guide);
    const auto title = [](const QModelIndex &entry) {
        return entry.data(int(QPdfBookmarkModel::Role::Title)).toString();
    };
    for (int part : {0, 1}) {
        const QModelIndex language = outline.index(part, 0, {});
        EXPECT_EQ(title(language), part == 0 ? u"Hướng dẫn sử dụng"_s : u"User guide"_s);
        EXPECT_EQ(outline.rowCount(language), 11);
        for (int row = 0; row < outline.rowCount(language); ++row) {
            const QModelIndex heading = outline.index(row, 0, language);
            const int page = heading.data(int(QPdfBookmarkModel::Role::Page)).toInt();
            EXPECT_TRUE(pages.value(page).contains(title(heading))) << qPrintable(title(heading)) << page;
        }
    }
    EXPECT_TRUE(pages.join(u' ').contains(u"Pāli-Việt"_s)) << "letters with marks are text";
}
