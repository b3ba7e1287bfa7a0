#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <QtEndian>
#include <array>
#include <cstdio>
#include <span>

// Writes a bundle's icon (.icns) from a drawing: a four-letter tag and a length, then PNG images, each
// preceded by a four-letter tag for its size and a length. Lengths include these eight bytes and are
// big-endian. Runs on every system, so no Mac is needed to check the result.
//
//     ulvak_make_icon DRAWING.svg ICON.icns

namespace {

struct Picture {
    const char* kind;
    int side;  ///< pixels
};

/// Sizes from 16 to 512 points, including those at double resolution.
constexpr std::array<Picture, 8> pictures = {{
    {"ic11", 32},
    {"ic12", 64},
    {"ic07", 128},
    {"ic13", 256},
    {"ic08", 256},
    {"ic14", 512},
    {"ic09", 512},
    {"ic10", 1024},
}};

QByteArray block(const char* kind, const QByteArray& contents) {
    QByteArray length(4, '\0');
    qToBigEndian(static_cast<quint32>(contents.size() + 8), length.data());
    return QByteArray(kind, 4) + length + contents;
}

QByteArray drawn(QSvgRenderer& drawing, int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return image.save(&buffer, "PNG") ? bytes : QByteArray();
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() != 3) {
        (void)std::fputs("usage: ulvak_make_icon DRAWING.svg ICON.icns\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(arguments[1]));
    if (!drawing.isValid()) {
        (void)std::fprintf(stderr, "ulvak_make_icon: %s is no drawing\n", arguments[1]);
        return 1;
    }
    QByteArray contents;
    for (const Picture& picture : pictures) {
        const QByteArray png = drawn(drawing, picture.side);
        if (png.isEmpty()) {
            (void)std::fprintf(stderr, "ulvak_make_icon: no picture of %d pixels can be made\n",
                               picture.side);
            return 1;
        }
        contents += block(picture.kind, png);
    }
    QFile icon(QString::fromLocal8Bit(arguments[2]));
    const QByteArray bytes = block("icns", contents);
    if (!icon.open(QIODevice::WriteOnly) || icon.write(bytes) != bytes.size()) {
        (void)std::fprintf(stderr, "ulvak_make_icon: %s cannot be written\n", arguments[2]);
        return 1;
    }
    return 0;
}
