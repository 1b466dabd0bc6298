#include "support/TestSupport.h"

#include <QPdfBookmarkModel>
#include <QPdfDocument>
#include <QPdfSelection>

#include <gmock/gmock.h>
#define POINTERHOLDER_TRANSITION 4
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <functional>
#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace {

/// Passes each thing in a PDF's tree of structure to `visit`, parents first, with its language.
void Walk(QPDFObjectHandle thing, const std::string &inherited,
          const std::function<void(QPDFObjectHandle, const std::string &)> &visit)
{
    const std::string language = thing.hasKey("/Lang") ? thing.getKey("/Lang").getUTF8Value() : inherited;
    visit(thing, language);
    if (!thing.hasKey("/K"))
        return;
    for (QPDFObjectHandle held : thing.getKey("/K").getArrayAsVector())
        Walk(held, language, visit);
}

/// Looks at the marked content of a page: nothing inside another, and nothing to read outside.
struct MarkedContent : QPDFObjectHandle::ParserCallbacks
{
    void handleObject(QPDFObjectHandle object, size_t, size_t) override
    {
        if (!object.isOperator())
            return;
        const std::string word = object.getOperatorValue();
        if (word == "BDC" || word == "BMC") {
            EXPECT_EQ(depth++, 0);
            tagged += word == "BDC";
        } else if (word == "EMC") {
            --depth;
        } else if (word == "TJ" || word == "Do") {
            EXPECT_EQ(depth, 1);
        }
    }
    void handleEOF() override { EXPECT_EQ(depth, 0); }

    int depth = 0;
    size_t tagged = 0;
};

} // namespace

TEST(UserGuide, TellsAScreenReaderStructureLanguageAndPictures)
{
    QPDF pdf;
    pdf.processFile((ProductFolder() + u"LumivaraUserGuide.pdf"_s).toUtf8().constData());
    QPDFObjectHandle root = pdf.getRoot();
    EXPECT_EQ(root.getKey("/Lang").getUTF8Value(), "vi");
    EXPECT_TRUE(root.getKey("/MarkInfo").getKey("/Marked").getBoolValue());

    std::map<std::string, int> chapters, pictures;
    std::set<std::pair<int, int>> places;
    Walk(root.getKey("/StructTreeRoot"), "vi", [&](QPDFObjectHandle thing, const std::string &language) {
        if (thing.hasKey("/MCID")) {
            EXPECT_TRUE(
                places.emplace(thing.getKey("/Pg").getObjectID(), thing.getKey("/MCID").getIntValueAsInt()).second);
        }
        if (!thing.hasKey("/S"))
            return;
        const std::string tag = thing.getKey("/S").getName();
        chapters[language] += tag == "/H2";
        pictures[language] += tag == "/Figure";
        EXPECT_TRUE(tag != "/Figure" || !thing.getKey("/Alt").getUTF8Value().empty());
    });
    EXPECT_EQ(chapters, (std::map<std::string, int>{{"en", 12}, {"vi", 12}}));
    EXPECT_GT(pictures["en"], 12);
    EXPECT_EQ(pictures["en"], pictures["vi"]);

    MarkedContent content;
    for (auto &page : QPDFPageDocumentHelper(pdf).getAllPages())
        page.parseContents(&content);
    EXPECT_EQ(content.tagged, places.size());
}

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
        EXPECT_EQ(outline.rowCount(language), 12);
        for (int row = 0; row < outline.rowCount(language); ++row) {
            const QModelIndex heading = outline.index(row, 0, language);
            const int page = heading.data(int(QPdfBookmarkModel::Role::Page)).toInt();
            EXPECT_TRUE(pages.value(page).contains(title(heading))) << qPrintable(title(heading)) << page;
        }
    }
    EXPECT_TRUE(pages.join(u' ').contains(u"Pāli-Việt"_s)) << "letters with marks are text";
}
