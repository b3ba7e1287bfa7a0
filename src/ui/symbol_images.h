#pragma once

#include <QQuickImageProvider>

namespace ulvak {

/// The named symbols, drawn in one colour and sharp at any size: "image://symbols/NAME/RRGGBBAA".
/// Threads: called on the scene's image loader thread.
class SymbolImages : public QQuickImageProvider {
public:
    SymbolImages() : QQuickImageProvider(QQuickImageProvider::Image) {}

    /// `requestedSize` is in device pixels. An unknown name yields an empty image.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace ulvak
