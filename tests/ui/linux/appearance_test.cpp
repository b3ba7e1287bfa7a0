#include "ui/appearance.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPalette>

#include "support/linux/stand_in_portal.h"
#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::StandInPortal;
using test::waitUntil;

class AppearanceTest : public test::WindowTest {
protected:
    AppearanceTest() { QGuiApplication::setPalette(QPalette(QColor(0xf0, 0xf0, 0xf0))); }
    ~AppearanceTest() override { QGuiApplication::setPalette(before_); }

    void openFor(DesktopAppearance& desktop) {
        open();
        window->setProperty("appearance", QString());
        desktop.follow(*window);
    }
    bool turnsDark() {
        return waitUntil([&] { return window->color().lightnessF() < 0.3; });
    }
    bool turnsLight() {
        return waitUntil([&] { return window->color().lightnessF() > 0.7; });
    }

private:
    const QPalette before_ = QGuiApplication::palette();
};

TEST_F(AppearanceTest, TheWindowFollowsTheDesktopAndThePaletteWhereThatDoesNotSay) {
    const test::SessionBus bus;
    StandInPortal portal(bus, StandInPortal::Age::current, 1);
    {
        DesktopAppearance desktop;
        openFor(desktop);
        EXPECT_TRUE(turnsDark());
        portal.change(2);
        EXPECT_TRUE(turnsLight());
        portal.change(1);
        EXPECT_TRUE(turnsDark());
        portal.change(0);
        EXPECT_TRUE(turnsLight()) << "as the palette is";
        QGuiApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
        EXPECT_TRUE(turnsDark());
        portal.change(2);
        EXPECT_TRUE(turnsLight()) << "whatever the palette is";
        engine.reset();
    }
}

TEST_F(AppearanceTest, WhatIsSetForTheWindowItselfGoesFirst) {
    const test::SessionBus bus;
    const StandInPortal portal(bus, StandInPortal::Age::current, 1);
    {
        DesktopAppearance desktop;
        openFor(desktop);
        EXPECT_TRUE(turnsDark());
        window->setProperty("appearance", QStringLiteral("light"));
        EXPECT_TRUE(turnsLight());
        engine.reset();
    }
}

}  // namespace
}  // namespace ulvak
