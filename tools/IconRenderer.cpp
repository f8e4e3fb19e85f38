// Renders an SVG drawing as a square PNG.
//
//   iconRenderer DRAWING.svg PIXELS PICTURE.png

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 4)
        return std::fputs("usage: iconRenderer DRAWING.svg PIXELS PICTURE.png\n", stderr), 2;
    const int pixels = QByteArray{argv[2]}.toInt();
    QSvgRenderer drawing{QString::fromLocal8Bit(argv[1])};
    QImage image{pixels, pixels, QImage::Format_ARGB32};
    if (!drawing.isValid() || image.isNull())
        return std::fprintf(stderr, "iconRenderer: cannot render %s\n", argv[1]), 1;
    image.fill(Qt::transparent);
    QPainter painter{&image};
    drawing.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(argv[3]), "PNG") ? 0 : 1;
}
