#include "ui/symbol_images.h"

#include <QPainter>
#include <QSvgRenderer>

namespace ulvak {

QImage SymbolImages::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    constexpr QSize usual(24, 24);
    const QString name = id.section(u'/', 0, 0);
    const QString color = id.section(u'/', 1, 1);
    const QSize pixels = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : usual;
    if (size != nullptr)
        *size = pixels;
    QSvgRenderer drawing(QStringLiteral(":/symbols/%1.svg").arg(name));
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (!drawing.isValid())
        return image;
    QPainter painter(&image);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), QColor(QStringLiteral("#") + color.right(2) + color.left(6)));
    return image;
}

}  // namespace ulvak
