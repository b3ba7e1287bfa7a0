#include <gtest/gtest.h>

#include <QHash>
#include <QQmlComponent>
#include <QtTest>
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "ui/staged_window.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::uncleanable;
using test::waitUntil;

double luminance(QColor color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(QColor one, QColor other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool isText(const QQuickItem& item) {
    return item.inherits("QQuickText") || item.inherits("QQuickTextEdit") ||
           item.inherits("ulvak::FigureText");
}

/// Measures a rendered picture of the window in both appearances: text contrasts with its background by at
/// least 4.5 to 1, as people with low vision need, and text field borders by 3 to 1.
class ContrastTest : public test::WindowTest, public testing::WithParamInterface<const char*> {
protected:
    static constexpr double minContrastOfLetters = 4.5;
    static constexpr double minContrastOfEdges = 3;

    void openIn(const QString& appearance) {
        open();
        window->resize(1320, 1500);  // so that nothing is scrolled out of view
        window->setProperty("appearance", appearance);
        settle();
    }
    /// Returns the number of texts; checks that each is legible.
    int check(const char* page, const QQuickItem* root = nullptr) {
        SCOPED_TRACE(page);
        for (int turn = 0; turn < 3; ++turn)
            settle();
        picture_ = window->grabWindow();
        return checkBelow(root != nullptr ? *root : *window->contentItem());
    }
    void hover(const QQuickItem* item) {
        ASSERT_NE(item, nullptr);
        for (int turn = 0; turn < 3; ++turn)
            settle();
        QTest::mouseMove(window, item->mapToScene(QPointF(item->width() / 2, 3)).toPoint());
        ASSERT_TRUE(waitUntil([&] { return item->property("hovered").toBool(); }));
    }
    const QQuickItem* contentOf(const char* popupName) {
        return popup(QString::fromLatin1(popupName))->property("contentItem").value<QQuickItem*>();
    }
    QColor pixel(QPointF place) {
        return picture_.pixelColor((place * window->effectiveDevicePixelRatio()).toPoint());
    }

private:
    int checkBelow(const QQuickItem& item) {
        if (!item.isVisible() || item.opacity() < 1)  // disabled items are pale on purpose
            return 0;
        int count = 0;
        if (isText(item) && !item.property("text").toString().isEmpty() && item.width() > 0) {
            ++count;
            const QColor ink = item.property("color").value<QColor>();
            const QColor ground = groundOf(item);
            EXPECT_GE(contrast(ink, ground), minContrastOfLetters)
                << item.property("text").toString().left(40).toStdString() << ": " << ink.name().toStdString()
                << " on " << ground.name().toStdString();
        }
        for (const QQuickItem* child : item.childItems())
            count += checkBelow(*child);
        return count;
    }
    /// The most common colour in the rectangle: letters cover less than half of it.
    QColor groundOf(const QQuickItem& item) {
        const double scale = window->effectiveDevicePixelRatio();
        const QRectF scene = item.mapRectToScene(item.boundingRect());
        const QRect place = QRectF(scene.topLeft() * scale, scene.size() * scale).toRect() & picture_.rect();
        QHash<QRgb, int> counts;
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x)
                ++counts[picture_.pixel(x, y)];
        }
        const auto most = std::max_element(counts.cbegin(), counts.cend());
        return most == counts.cend() ? QColor() : QColor(most.key());
    }

    QImage picture_;
};

TEST_P(ContrastTest, EveryTextOfTheOverviewIsLegible) {
    stage.denied = 3;
    stage.disk = DiskInfo{.total = 500'000'000'000, .available = 1'000'000'000};
    stage.result = {finding("/v/a", SafetyLevel::safe),
                    finding("/v/b", SafetyLevel::safe),
                    guessed(finding("/v/c", SafetyLevel::caution)),
                    finding("/v/d", SafetyLevel::unknown),
                    finding("/v/e", SafetyLevel::keep),
                    finding("/v/f", SafetyLevel::regenerable)};
    openIn(QString::fromLatin1(GetParam()));
    EXPECT_GE(check("welcome"), 15);
    hover(item(QStringLiteral("start")));
    check("start under the pointer");
    stage.scanGate.shut();
    app->scan();
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("currentPath")).startsWith(u'/'); }));
    check("scanning");
    stage.scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("card-safe")); }));
    app->clean({"/v/a"}, CleanMode::trash);
    app->clean({"/v/b"}, CleanMode::permanent);
    ASSERT_TRUE(waitUntil(
        [&] { return shows(QStringLiteral("trashBanner")) && shows(QStringLiteral("freedBanner")); }));
    EXPECT_GE(check("results"), 40);
    for (const char* name : {"card-safe", "card-keep", "emptyTrash", "analyzeAll", "scan", "largest-0"}) {
        hover(item(QString::fromLatin1(name)));
        check(name);
    }
}

TEST_P(ContrastTest, EveryTextOfListsAndDetailsIsLegible) {
    Finding full = guessed(finding("/v/safe", SafetyLevel::safe, 2'000'000'000));
    full.quitApps = {"Bir Uygulama"};
    full.children = {{.name = "çocuk", .size = 1000}};
    stage.result = {full,
                    uncleanable(finding("/v/b", SafetyLevel::safe)),
                    finding("/v/regenerable", SafetyLevel::regenerable),
                    guessed(finding("/v/caution", SafetyLevel::caution)),
                    finding("/v/unknown", SafetyLevel::unknown),
                    finding("/v/keep", SafetyLevel::keep)};
    openIn(QString::fromLatin1(GetParam()));
    scanAll();
    for (const SafetyLevel level : allSafetyLevels) {
        model->setSidebar(SidebarItem{level});
        model->list()->selection()->press(0, Qt::NoModifier);
        ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("moveToTrash")); }));
        hover(item(QStringLiteral("moveToTrash")));
        EXPECT_GE(check(std::string(info(level).title).c_str()), 20);
        hover(item(QStringLiteral("relabel")));
        check("a plain button under the pointer");
    }
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->selectAll();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("cleanSeveral")); }));
    hover(item(QStringLiteral("cleanSeveral")));
    check("several");
    model->setSidebar(SidebarItem{});
    check("nothing selected");
}

TEST_P(ContrastTest, EveryTextOfDialogsAndMenusIsLegible) {
    stage.result = {guessed(finding("/v/a", SafetyLevel::safe))};
    openIn(QString::fromLatin1(GetParam()));
    key(Qt::Key_F10);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("mainMenu")); }));
    EXPECT_GE(check("menu", contentOf("mainMenu")), 4);
    key(Qt::Key_Escape);
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->press(0, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("removePermanently")); }));
    click(QStringLiteral("removePermanently"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmPermanent")); }));
    EXPECT_GE(check("dialog", contentOf("confirmPermanent")), 4);
    hover(inPopup(QStringLiteral("confirmPermanent"), QStringLiteral("confirm")));
    check("its button under the pointer", contentOf("confirmPermanent"));
}

TEST_P(ContrastTest, TheFieldForANoteHasAnEdge) {
    stage.result = {guessed(finding("/v/a", SafetyLevel::safe))};
    openIn(QString::fromLatin1(GetParam()));
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->press(0, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("note")); }));
    check("detail");
    const QQuickItem* note = item(QStringLiteral("note"));
    const QRectF place = note->mapRectToScene(note->boundingRect());
    const QPointF edge(place.left() + 0.25, place.center().y());
    EXPECT_GE(contrast(pixel(edge), pixel(edge + QPointF(3, 0))), minContrastOfEdges) << "inside";
    EXPECT_GE(contrast(pixel(edge), pixel(edge - QPointF(3, 0))), minContrastOfEdges) << "outside";
}

TEST_P(ContrastTest, EveryInkIsLegibleOnEveryGround) {
    openIn(QString::fromLatin1(GetParam()));
    QQmlComponent component(engine.get());
    component.setData("import Ulvak.Style; import QtQuick; QtObject { readonly property var theme: Theme }",
                      {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_NE(holder, nullptr) << component.errorString().toStdString();
    const auto* theme = holder->property("theme").value<QObject*>();
    for (const char* ink : {"text", "secondary", "tertiary"}) {
        for (const char* ground : {"window", "side", "detail", "raised"})
            EXPECT_GE(contrast(theme->property(ink).value<QColor>(), theme->property(ground).value<QColor>()),
                      minContrastOfLetters)
                << ink << " on " << ground;
    }
}

INSTANTIATE_TEST_SUITE_P(Appearances, ContrastTest, testing::Values("light", "dark"),
                         [](const auto& appearance) { return std::string(appearance.param); });

}  // namespace
}  // namespace ulvak
