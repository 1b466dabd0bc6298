#include "toolkit/PictureEngine.h"

#include "toolkit/SkinStyle.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <utility>

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

constexpr int Size = 20;
constexpr int Edge = 5; // half of it is no whole pixel

constexpr quint32 OffColour = 0xff808080;
constexpr quint32 ChosenColour = 0xff0000ff;

/// A column in each colour: ink up to 2.5, accent up to 12.5, fill up to the end at 20.
const QByteArray Columns = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 20">
<path fill="#3f4f63" d="M0 0h2.5v20h-2.5z"/><path fill="#b8621b" d="M2.5 0h10v20h-10z"/>
<path fill="#fbf3e4" d="M12.5 0h7.5v20h-7.5z"/></svg>)";

Skin SkinOf(quint32 ink, quint32 accent, quint32 fill)
{
    Skin skin;
    const std::pair<SkinPart, quint32> parts[] = {{SkinPart::IconInk, ink},
                                                  {SkinPart::IconAccent, accent},
                                                  {SkinPart::IconFill, fill},
                                                  {SkinPart::DisabledText, OffColour},
                                                  {SkinPart::MenuSelectionText, ChosenColour}};
    for (const auto &[part, colour] : parts)
        skin.fills[static_cast<size_t>(part)] = {colour, colour};
    return skin;
}

} // namespace

class PictureEngineTest : public testing::Test
{
protected:
    ~PictureEngineTest() override
    {
        QApplication::setStyle(QStyleFactory::create(m_style));
        QApplication::setPalette(m_palette);
    }

    QString Write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    static QList<QRgb> ColoursOf(const QIcon &icon, QIcon::Mode mode)
    {
        const QImage image = icon.pixmap(QSize(Size, Size), 1, mode).toImage();
        return {image.pixel(0, 9), image.pixel(7, 9), image.pixel(16, 9)};
    }

private:
    QTemporaryDir m_folder;
    QString m_style = QApplication::style()->objectName();
    QPalette m_palette = QApplication::palette();
};

TEST_F(PictureEngineTest, ColoursFollowSkinAndPaletteAtOnce)
{
    const QIcon icon(Write(u"columns.picture"_s, Columns));

    QPalette palette(Qt::white, Qt::black);
    palette.setColor(QPalette::Link, Qt::yellow);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::darkRed);
    palette.setColor(QPalette::HighlightedText, Qt::cyan);
    QApplication::setPalette(palette);
    const QList<QRgb> onBlack = ColoursOf(icon, QIcon::Normal);
    EXPECT_GT(qGray(onBlack[0]), 180) << "lines must be seen on a dark ground";
    EXPECT_EQ(onBlack[1], QColor(Qt::yellow).rgb());
    EXPECT_LT(qGray(onBlack[2]), 80) << "light parts must not glare on a dark ground";
    EXPECT_EQ(ColoursOf(icon, QIcon::Disabled)[1], QColor(Qt::darkRed).rgb());
    EXPECT_EQ(ColoursOf(icon, QIcon::Selected)[0], QColor(Qt::cyan).rgb());

    auto *style = new SkinStyle(SkinOf(0xff112233, 0xff445566, 0xff778899));
    QApplication::setStyle(style);
    for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Active})
        EXPECT_THAT(ColoursOf(icon, mode), ElementsAre(0xff112233, 0xff445566, 0xff778899));
    EXPECT_EQ(ColoursOf(icon, QIcon::Disabled).mid(0, 2), QList<QRgb>(2, OffColour));
    EXPECT_EQ(ColoursOf(icon, QIcon::Selected).mid(0, 2), QList<QRgb>(2, ChosenColour));

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
    const QIcon icon(Write(u"columns.picture"_s, Columns));
    QApplication::setStyle(new SkinStyle(SkinOf(0xff000000, 0xffffffff, 0xff000000)));

    const QPixmap asked = icon.pixmap(QSize(Size, Size), 2);
    EXPECT_EQ(asked.devicePixelRatio(), 2);
    QPixmap painted(2 * Size, 2 * Size);
    painted.setDevicePixelRatio(2);
    painted.fill(Qt::red);
    QPainter painter(&painted);
    icon.paint(&painter, 0, 0, Size, Size);
    painter.end();
    for (const QImage &image : {asked.toImage(), painted.toImage()}) {
        EXPECT_EQ(image.size(), QSize(2 * Size, 2 * Size));
        EXPECT_EQ(image.pixel(Edge - 1, Size), 0xff000000);
        EXPECT_EQ(image.pixel(Edge, Size), 0xffffffff);
    }
}

TEST_F(PictureEngineTest, ABrokenFileShowsNothing)
{
    EXPECT_TRUE(QIcon(u"/nowhere/missing.picture"_s).pixmap(QSize(Size, Size), 2).isNull());
    for (const QByteArray &bytes : {QByteArray(), Columns.left(60), QByteArray(500, '\xff'), QByteArray("words")})
        EXPECT_TRUE(QIcon(Write(u"broken.picture"_s, bytes)).pixmap(QSize(Size, Size), 2).isNull())
            << bytes.constData();
}

TEST(Pictures, OfAllCommandsHaveTheThreeColoursAndNoOther)
{
    InitPictures();
    const QRegularExpression otherColour(
        u"(?:fill|stroke)=\"(?!none|#3f4f63|#b8621b|#fbf3e4)[^\"]*\"|style=|opacity"_s);
    for (const QString &folder : {u":/images"_s, u":/marks"_s, u":/search"_s, u":/navigator"_s, u":/box"_s}) {
        const QFileInfoList files = QDir(folder).entryInfoList({u"*.picture"_s});
        EXPECT_FALSE(files.isEmpty()) << qPrintable(folder);
        for (const QFileInfo &info : files) {
            const std::string name = info.filePath().toStdString();
            QFile file(info.filePath());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
            EXPECT_FALSE(otherColour.match(QString::fromUtf8(file.readAll())).hasMatch()) << name;
            const QImage shown = QIcon(info.filePath()).pixmap(QSize(Size, Size), 1).toImage();
            EXPECT_FALSE(shown.isNull()) << name;
            EXPECT_NE(shown, QIcon(info.filePath()).pixmap(QSize(Size, Size), 1, QIcon::Disabled).toImage()) << name;
        }
    }
}
