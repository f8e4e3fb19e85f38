// Compares drawn pictures with the kept ones, with a small tolerance for the smoothing of fonts.
//
//   pictureComparison KEPT_DIR DRAWN_DIR
//
// Every PNG of the first folder must be in the second one, with the same size and content.

#include <QDir>
#include <QImage>
#include <QTextStream>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int tolerance = 24; ///< of 255, in each channel of a pixel
constexpr double largestShare = 0.005; ///< of the pixels that may differ by more

bool differ(QRgb left, QRgb right)
{
    const int distance = std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                                   std::abs(qBlue(left) - qBlue(right))});
    return distance > tolerance;
}

/// The share of pixels that differ; 1 for pictures of different sizes.
double shareOfDifferentPixels(const QImage& left, const QImage& right)
{
    if (left.isNull() || left.size() != right.size())
        return 1;
    qint64 different = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            different += differ(left.pixel(x, y), right.pixel(x, y)) ? 1 : 0;
    }
    return static_cast<double>(different) / (static_cast<double>(left.width()) * left.height());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return QTextStream{stderr} << "usage: pictureComparison KEPT_DIR DRAWN_DIR\n", 2;
    const QDir kept{QString::fromLocal8Bit(argv[1])};
    const QDir drawn{QString::fromLocal8Bit(argv[2])};
    const QStringList names = kept.entryList({QStringLiteral("*.png")}, QDir::Files);
    int unlike = 0;
    for (const QString& name : names) {
        const double share = shareOfDifferentPixels(QImage{kept.filePath(name)}, QImage{drawn.filePath(name)});
        if (share <= largestShare)
            continue;
        ++unlike;
        QTextStream{stderr} << name << ": " << 100 * share << " % of the pixels differ\n";
    }
    if (names.isEmpty())
        QTextStream{stderr} << "no picture in " << kept.path() << '\n';
    return unlike == 0 && !names.isEmpty() ? 0 : 1;
}
