#include "ui/figure_text.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSignalSpy>

namespace ulvak {
namespace {

QImage picture(FigureText& text) {
    QImage image(200, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    text.paint(&painter);
    return image;
}

/// The part of the image from column `begin` on, wide enough for what is drawn there.
QImage from(const QImage& image, double begin) {
    return image.copy(static_cast<int>(begin), 0, 60, image.height());
}

TEST(FigureText, IsAsWideWhateverItsDigits) {
    FigureText narrow;
    FigureText wide;
    narrow.setText(QStringLiteral("1.111,11 GB"));
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        wide.setText(QStringLiteral("1.111,11 GB").replace(u'1', QChar(digit)));
        EXPECT_EQ(wide.implicitWidth(), narrow.implicitWidth()) << static_cast<int>(digit);
    }
    wide.setText(QStringLiteral("11.111,11 GB"));
    EXPECT_GT(wide.implicitWidth(), narrow.implicitWidth());
}

TEST(FigureText, WhatFollowsADigitStandsStill) {
    FigureText text;
    text.setText(QStringLiteral("1 GB"));
    const QImage one = picture(text);
    text.setText(QStringLiteral("8 GB"));
    const QImage eight = picture(text);
    EXPECT_NE(one, eight);
    FigureText digit;
    digit.setText(QStringLiteral("0"));
    EXPECT_EQ(from(one, digit.implicitWidth() + 1), from(eight, digit.implicitWidth() + 1));
}

TEST(FigureText, TellsOfChangesOnly) {
    FigureText text;
    const QSignalSpy changes(&text, &FigureText::textChanged);
    text.setText(QStringLiteral("5 MB"));
    text.setText(QStringLiteral("5 MB"));
    EXPECT_EQ(changes.count(), 1);
    text.setText({});
    EXPECT_EQ(text.implicitWidth(), 0);
    EXPECT_GT(text.implicitHeight(), 0);
    EXPECT_GT(text.baselineOffset(), 0);
}

}  // namespace
}  // namespace ulvak
