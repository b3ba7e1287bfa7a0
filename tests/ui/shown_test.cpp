#include "ui/shown.h"

#include <gtest/gtest.h>

#include <string>

namespace ulvak {
namespace {

constexpr char16_t replacement = 0xFFFD;

TEST(Shown, PlainTextStaysAsItIs) {
    EXPECT_EQ(shown("Önbellek Şğıİ 📦"), QStringLiteral(u"Önbellek Şğıİ 📦"));
    EXPECT_EQ(shown(""), QString());
}

TEST(Shown, WhatCouldActIsReplaced) {
    EXPECT_EQ(shown("satır\nsonu"), QStringLiteral("satır%1sonu").arg(QChar(replacement)));
    EXPECT_EQ(shown("\x1b[31m"), QString(QChar(replacement)) + QStringLiteral("[31m"));
    EXPECT_EQ(shown("a\xff"), QStringLiteral("a") + QChar(replacement));
    EXPECT_EQ(shown("a\u202Eb"), QStringLiteral("a%1b").arg(QChar(replacement)));
    EXPECT_EQ(shown(std::string_view("a\0b", 3)), QStringLiteral("a%1b").arg(QChar(replacement)));
}

TEST(Shown, LinesStayLinesWithoutBlankOnesAtTheEnd) {
    EXPECT_EQ(shownLines("bir\niki\n\n"), QStringLiteral("bir\niki"));
    EXPECT_EQ(shownLines("bir\n\niki"), QStringLiteral("bir\n\niki"));
    EXPECT_EQ(shownLines("a\x1b\nb\r\nc"), QStringLiteral("a%1\nb%1\nc").arg(QChar(replacement)));
    EXPECT_EQ(shownLines("\n\n"), QString());
    EXPECT_EQ(shownLines(""), QString());
}

TEST(IdText, EveryByteComesBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(idOf(idText(all)), all);
    EXPECT_EQ(idOf(idText("")), "");
    EXPECT_EQ(idOf(idText("~/utf-8-de\xf0il-\xff\n/Şğ📦")), "~/utf-8-de\xf0il-\xff\n/Şğ📦");
}

TEST(IdText, TwoIdsThatAreShownAlikeStayTwo) {
    EXPECT_EQ(shown("/a\xfe"), shown("/a\xff"));
    EXPECT_NE(idText("/a\xfe"), idText("/a\xff"));
    EXPECT_NE(idText("/ö"), idText("/o\u0308"));
}

}  // namespace
}  // namespace ulvak
