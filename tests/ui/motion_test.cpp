#include "ui/motion.h"

#include <gtest/gtest.h>

#include <QObject>
#include <QQmlContext>
#include <QQmlExpression>
#include <QVariant>
#include <optional>

#include "support/environment.h"
#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::ScopedEnvironment;

TEST(Motion, IsThereUnlessSomebodyWantsNone) {
    const ScopedEnvironment unset({{"ULVAK_REDUCED_MOTION", std::nullopt}});
    EXPECT_FALSE(wantsReducedMotion({}));
    EXPECT_FALSE(wantsReducedMotion({QStringLiteral("--reduced-motion=1"), QStringLiteral("--autoscan")}));
    EXPECT_TRUE(wantsReducedMotion({QStringLiteral("--autoscan"), QStringLiteral("--reduced-motion")}));
}

TEST(Motion, FollowsTheEnvironment) {
    for (const auto& [value, wanted] : {std::pair("1", true), {"evet", true}, {"0", false}, {"", false}}) {
        const ScopedEnvironment set({{"ULVAK_REDUCED_MOTION", value}});
        EXPECT_EQ(wantsReducedMotion({}), wanted) << value;
    }
}

class MotionInTheWindow : public test::WindowTest {};

TEST_F(MotionInTheWindow, TransitionsAreShortAndTakeNoTimeWhereNoneAreWanted) {
    open();
    QQuickItem* somewhere = item(QStringLiteral("sidebar"));
    for (const char* name : {"Theme.quick", "Theme.calm"}) {
        QQmlExpression duration(qmlContext(somewhere), somewhere, QString::fromLatin1(name));
        window->setProperty("reducedMotion", false);
        EXPECT_GT(duration.evaluate().toInt(), 0) << name;
        EXPECT_LE(duration.evaluate().toInt(), 250) << name;
        window->setProperty("reducedMotion", true);
        EXPECT_EQ(duration.evaluate(), QVariant(0)) << name;
    }
}

}  // namespace
}  // namespace ulvak
