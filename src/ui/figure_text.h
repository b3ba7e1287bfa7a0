#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QString>

namespace ulvak {

/// A line of text with digits of equal width. Fonts may offer such digits, but the oldest supported Qt cannot
/// request them. Always a single item, because lists contain many of these.
///
/// Threads: the UI thread; painted on the render thread while the UI thread is blocked.
class FigureText : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged FINAL)
public:
    explicit FigureText(QQuickItem* parent = nullptr);

    [[nodiscard]] QString text() const { return text_; }
    void setText(const QString& text);
    [[nodiscard]] QColor color() const { return color_; }
    void setColor(const QColor& color);
    [[nodiscard]] QFont font() const { return font_; }
    void setFont(const QFont& font);

    void paint(QPainter* painter) override;

signals:
    void textChanged();
    void colorChanged();
    void fontChanged();

private:
    void setUpFont();
    void measure();

    QString text_;
    QColor color_ = Qt::black;
    QFont font_;
    double digitWidth_ = 0;
};

}  // namespace ulvak
