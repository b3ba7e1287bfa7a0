#include "ui/figure_text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace ulvak {
namespace {

bool isDigit(QChar letter) {
    return letter >= u'0' && letter <= u'9';
}

double widestDigit(const QFontMetricsF& metrics) {
    double width = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        width = std::max(width, metrics.horizontalAdvance(QChar(digit)));
    return width;
}

/// Calls `visit` with each digit, `width` wide, and each run of non-digits, along with its start. Returns the
/// end of the last.
template <typename Visit>
double layOut(const QString& text, const QFontMetricsF& metrics, double width, Visit visit) {
    double x = 0;
    for (qsizetype begin = 0; begin < text.size();) {
        qsizetype end = begin + 1;
        while (!isDigit(text[begin]) && end < text.size() && !isDigit(text[end]))
            ++end;
        const QString run = text.mid(begin, end - begin);
        const double runWidth = metrics.horizontalAdvance(run);
        const bool digit = isDigit(text[begin]);
        visit(digit ? x + (width - runWidth) / 2 : x, run);
        x += digit ? width : runWidth;
        begin = end;
    }
    return x;
}

}  // namespace

FigureText::FigureText(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setUpFont();
}

void FigureText::setText(const QString& text) {
    if (text == text_)
        return;
    text_ = text;
    measure();
    emit textChanged();
}

void FigureText::setColor(const QColor& color) {
    if (color == color_)
        return;
    color_ = color;
    update();
    emit colorChanged();
}

void FigureText::setFont(const QFont& font) {
    if (font == font_)
        return;
    font_ = font;
    setUpFont();
    emit fontChanged();
}

void FigureText::setUpFont() {
    const QFontMetricsF metrics(font_);
    digitWidth_ = widestDigit(metrics);
    setBaselineOffset(metrics.ascent());
    measure();
}

void FigureText::measure() {
    const QFontMetricsF metrics(font_);
    const double width = layOut(text_, metrics, digitWidth_, [](double, const QString&) {});
    setImplicitSize(std::ceil(width), std::ceil(metrics.height()));
    update();
}

void FigureText::paint(QPainter* painter) {
    const QFontMetricsF metrics(font_);
    painter->setFont(font_);
    painter->setPen(color_);
    layOut(text_, metrics, digitWidth_,
           [&](double x, const QString& run) { painter->drawText(QPointF(x, metrics.ascent()), run); });
}

}  // namespace ulvak
