#include "toolkit/skin/PictureEngine.h"

#include "toolkit/skin/SkinStyle.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

static void InitPictures()
{
    Q_INIT_RESOURCE(reader);
    Q_INIT_RESOURCE(marks);
    Q_INIT_RESOURCE(search);
    Q_INIT_RESOURCE(navigator);
}

namespace {

constexpr QSize Size(20, 20);

/// A column in each colour: ink up to 2.5, accent up to 12.5, fill up to the end at 20.
const QByteArray Columns = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 20">
<path fill="#3f4f63" d="M0 0h2.5v20h-2.5z"/><path fill="#b8621b" d="M2.5 0h10v20h-10z"/>
<path fill="#fbf3e4" d="M12.5 0h7.5v20h-7.5z"/></svg>)";

Skin SkinOf(quint32 ink, quint32 accent, quint32 fill)
{
    Skin skin;
    skin.fills[size_t(SkinPart::IconInk)].top = ink;
    skin.fills[size_t(SkinPart::IconAccent)].top = accent;
    skin.fills[size_t(SkinPart::IconFill)].top = fill;
    skin.fills[size_t(SkinPart::DisabledText)].top = 0xff808080;
    skin.fills[size_t(SkinPart::MenuSelectionText)].top = 0xff0000ff;
    return skin;
}

class PictureEngineTest : public testing::Test
{
protected:
    ~PictureEngineTest() override
    {
        QApplication::setStyle(QStyleFactory::create(m_style));
        QApplication::setPalette(m_palette);
    }

    QIcon Icon(const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(u"a.picture"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return QIcon(file.fileName());
    }
    static QList<QRgb> ColoursOf(const QIcon &icon, QIcon::Mode mode)
    {
        const QImage image = icon.pixmap(Size, 1, mode).toImage();
        return {image.pixel(0, 9), image.pixel(7, 9), image.pixel(16, 9)};
    }

private:
    QTemporaryDir m_folder;
    QString m_style = QApplication::style()->objectName();
    QPalette m_palette = QApplication::palette();
};

} // namespace

TEST_F(PictureEngineTest, ColoursFollowSkinAndPaletteAtOnce)
{
    const QIcon icon = Icon(Columns);
    QPalette palette(Qt::white, Qt::black);
    palette.setColor(QPalette::Link, Qt::yellow);
    QApplication::setPalette(palette);
    const QList<QRgb> onBlack = ColoursOf(icon, QIcon::Normal);
    EXPECT_GT(qGray(onBlack[0]), 180) << "lines must be seen on a dark ground";
    EXPECT_EQ(onBlack[1], QColor(Qt::yellow).rgb());
    EXPECT_LT(qGray(onBlack[2]), 80) << "light parts must not glare on a dark ground";

    auto *style = new SkinStyle(SkinOf(0xff112233, 0xff445566, 0xff778899));
    QApplication::setStyle(style);
    EXPECT_THAT(ColoursOf(icon, QIcon::Active), ElementsAre(0xff112233, 0xff445566, 0xff778899));
    EXPECT_EQ(ColoursOf(icon, QIcon::Disabled).mid(0, 2), QList<QRgb>(2, 0xff808080));
    EXPECT_EQ(ColoursOf(icon, QIcon::Selected).mid(0, 2), QList<QRgb>(2, 0xff0000ff));
    // A skin whose colours are the file's own, the other way round.
    style->SetSkin(SkinOf(0xffb8621b, 0xfffbf3e4, 0xff3f4f63));
    EXPECT_THAT(ColoursOf(icon, QIcon::Normal), ElementsAre(0xffb8621b, 0xfffbf3e4, 0xff3f4f63));
    // More looks than are kept, and back to the first.
    for (const quint32 ink : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 1U}) {
        style->SetSkin(SkinOf(0xff000000 + ink, 0xff000000, 0xff000000));
        EXPECT_EQ(ColoursOf(icon, QIcon::Normal)[0], 0xff000000 + ink);
    }
}

TEST_F(PictureEngineTest, EdgesAreSharpAtTheDevicesPixels)
{
    const QIcon icon = Icon(Columns);
    QApplication::setStyle(new SkinStyle(SkinOf(0xff000000, 0xffffffff, 0xff000000)));
    const QImage image = icon.pixmap(Size, 2).toImage();
    EXPECT_EQ(image.pixel(4, 20), 0xff000000); // the edge is at half a pixel of the picture
    EXPECT_EQ(image.pixel(5, 20), 0xffffffff);
}

TEST_F(PictureEngineTest, ABrokenFileShowsNothing)
{
    EXPECT_TRUE(QIcon(u"/nowhere/missing.picture"_s).pixmap(Size, 2).isNull());
    for (const QByteArray &bytes : {QByteArray(), Columns.left(60), QByteArray(500, '\xff'), QByteArray("words")})
        EXPECT_TRUE(Icon(bytes).pixmap(Size, 2).isNull()) << bytes.constData();
}

TEST(Pictures, OfAllCommandsHaveTheThreeColoursAndNoOther)
{
    InitPictures();
    const QRegularExpression otherColour(
        u"(?:fill|stroke)=\"(?!none|#3f4f63|#b8621b|#fbf3e4)[^\"]*\"|style=|opacity"_s);
    for (const QString &folder : {u":/images"_s, u":/marks"_s, u":/search"_s, u":/navigator"_s}) {
        const QFileInfoList files = QDir(folder).entryInfoList({u"*.picture"_s});
        EXPECT_FALSE(files.isEmpty()) << qPrintable(folder);
        for (const QFileInfo &info : files) {
            QFile file(info.filePath());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_FALSE(otherColour.match(QString::fromUtf8(file.readAll())).hasMatch())
                << qPrintable(file.fileName());
            EXPECT_FALSE(QIcon(file.fileName()).pixmap(Size, 1).isNull()) << qPrintable(file.fileName());
        }
    }
}
