#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

/// Draws the program's icon in the sizes of an icon theme, by the same code that draws it in the windows:
/// lumivara-icons ICON.svg FOLDER SIZE… writes FOLDER/SIZE.png.
int main(int argc, char **argv)
{
    QTextStream errors(stderr);
    if (argc < 4) {
        errors << "usage: lumivara-icons ICON.svg FOLDER SIZE…\n";
        return 2;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    if (!icon.isValid()) {
        errors << argv[1] << ": no picture\n";
        return 2;
    }
    for (int i = 3; i < argc; ++i) {
        const int size = QByteArray(argv[i]).toInt();
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        icon.render(&painter);
        painter.end();
        const QString file = QStringLiteral("%1/%2.png").arg(QString::fromLocal8Bit(argv[2])).arg(size);
        if (!image.save(file)) {
            errors << file << ": cannot be written\n";
            return 2;
        }
    }
    return 0;
}
