#include <gtest/gtest.h>

#include <QFont>
#include <QGuiApplication>
#include <QRectF>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/words.h"
#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::waitUntil;

bool isFigures(const QQuickItem& item) {
    return item.inherits("ulvak::FigureText");
}

bool isText(const QQuickItem& item) {
    return item.inherits("QQuickText") || isFigures(item);
}

bool isSelectable(const QQuickItem& item) {
    return item.inherits("QQuickTextEdit");
}

template <typename Visit>
void forEachIn(const QQuickItem& root, Visit visit) {
    if (!root.isVisible())
        return;
    visit(root);
    for (const QQuickItem* child : root.childItems())
        forEachIn(*child, visit);
}

bool isButton(const QQuickItem& item) {
    return item.inherits("QQuickAbstractButton");
}

/// The bounding box of the glyphs, in window coordinates.
QRectF painted(const QQuickItem& text) {
    if (isFigures(text))
        return text.mapRectToScene(QRectF(0, 0, text.implicitWidth(), text.implicitHeight()));
    const double width =
        std::min(text.property("contentWidth").toDouble(), std::max(text.width(), text.implicitWidth()));
    const double room = text.width() - width;
    const int alignment = text.property("effectiveHorizontalAlignment").toInt();
    const double left = alignment == Qt::AlignHCenter ? room / 2 : alignment == Qt::AlignRight ? room : 0;
    return text.mapRectToScene(QRectF(left, 0, width, text.property("contentHeight").toDouble()));
}

/// Every page in the smallest window, at normal and double font size.
class LayoutTest : public test::WindowTest, public testing::WithParamInterface<int> {
protected:
    LayoutTest() {
        QFont font = before;
        font.setPixelSize(GetParam());
        QGuiApplication::setFont(font);
        Finding full =
            guessed(finding(std::string("/v/") + std::string(200, 'w'), SafetyLevel::safe, 888'888'888'888));
        full.source = VerdictSource::ai;
        full.confidence = 100;
        full.original.level = SafetyLevel::keep;
        full.explanation = std::string(300, 'x') + " sonu.";
        full.quitApps = {"Uzun Adlı Bir Uygulama", "Bir Başkası"};
        for (int number = 0; number < 13; ++number)
            full.children.push_back({.name = std::string(120, 'w'), .size = 888'888'888'888});
        stage.disk = DiskInfo{.total = 8'888'888'888'888, .available = 888'888'888'888};
        stage.files = 888'888'888;
        stage.bytes = 8'888'888'888'888;
        stage.denied = 8888;
        stage.current = "/" + std::string(300, 'w');
        stage.result = {full,
                        finding("/v/regenerable", SafetyLevel::regenerable, 888'888'888'888),
                        finding("/v/b", SafetyLevel::safe, 888'888'888'888),
                        guessed(finding("/v/caution", SafetyLevel::caution, 888'888'888'888)),
                        test::uncleanable(finding("/v/unknown", SafetyLevel::unknown, 888'888'888'888),
                                          "Bunu sistem kendisi yönetir, dokunulmaması gerekir."),
                        finding("/v/keep", SafetyLevel::keep, 888'888'888'888)};
    }
    ~LayoutTest() override { QGuiApplication::setFont(before); }

    void openSmall() {
        open();
        window->resize(window->minimumSize());
        place();
    }
    void place() {
        for (int turn = 0; turn < 3; ++turn)
            settle();
    }
    /// Every visible text fits: horizontally in anything that clips it, and in both directions in its button.
    void check(const char* page) {
        SCOPED_TRACE(page);
        place();
        checkBelow(*window->contentItem(), {.right = double(window->width()), .button = {}});
    }

    const QFont before = QGuiApplication::font();

private:
    /// The area in which text is visible.
    struct Room {
        double left = 0;
        double right = 0;
        QRectF button;  ///< null outside of buttons
    };

    void checkBelow(const QQuickItem& item, Room room) {
        if (!item.isVisible() || item.opacity() == 0)
            return;
        const QRectF place = item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
        if (isButton(item) || item.clip()) {
            room.left = std::max(room.left, place.left());
            room.right = std::min(room.right, place.right());
        }
        if (isButton(item))
            room.button = place;
        if (isText(item))
            checkText(item, room);
        if (item.inherits("QQuickImage"))
            checkSymbol(*item.parentItem(), item);
        if (item.inherits("QQuickRepeater"))
            checkRepeater(item);
        for (const QQuickItem* child : item.childItems())
            checkBelow(*child, room);
    }
    /// A Qt Quick layout resized at that moment reads items its repeater has deleted. The one allowed here
    /// always has a row per level.
    static void checkRepeater(const QQuickItem& repeater) {
        EXPECT_TRUE(!repeater.parentItem()->inherits("QQuickLayout") || repeater.objectName() == u"levels")
            << "in " << repeater.parentItem()->metaObject()->className();
    }
    /// A symbol fits its line.
    static void checkSymbol(const QQuickItem& symbol, const QQuickItem& drawing) {
        const std::string name = symbol.property("name").toString().toStdString();
        const double size = symbol.property("size").toDouble();
        EXPECT_NEAR(symbol.implicitWidth(), size, 1) << name;  // rounded to whole pixels
        EXPECT_NEAR(symbol.height(), size, 1) << name;
        checkPixels(drawing, name);
        EXPECT_GE(symbol.y(), -1) << name;
        EXPECT_LE(symbol.y() + symbol.height(), symbol.parentItem()->height() + 1) << name;
    }
    /// Each pixel of the image is exactly one device pixel: not scaled and not between two.
    static void checkPixels(const QQuickItem& drawing, const std::string& name) {
        const double scale = drawing.window()->effectiveDevicePixelRatio();
        EXPECT_EQ(drawing.property("sourceSize").toSizeF(), drawing.size() * scale) << name;
        const QPointF place = drawing.mapToScene({}) * scale;
        EXPECT_NEAR(place.x(), std::round(place.x()), 0.001) << name;
        EXPECT_NEAR(place.y(), std::round(place.y()), 0.001) << name;
    }
    static void checkText(const QQuickItem& text, const Room& room) {
        const std::string words = text.property("text").toString().left(60).toStdString();
        const QRectF letters = painted(text);
        EXPECT_GE(letters.left(), room.left - 1) << words;
        EXPECT_LE(letters.right(), room.right + 1) << words;
        if (!room.button.isNull()) {
            EXPECT_GE(letters.top(), room.button.top() - 1) << words;
            EXPECT_LE(letters.bottom(), room.button.bottom() + 1) << words;
        }
        const bool isCut =
            text.property("truncated").toBool() && text.property("maximumLineCount").toInt() != 3;
        EXPECT_TRUE(!isCut || text.property("elide").toInt() == Qt::ElideMiddle) << words;
        EXPECT_TRUE(isCut || painted(text).width() <= std::max(text.width(), 1.0) + 1) << words;
    }
};

TEST_P(LayoutTest, TheOverviewIsWhole) {
    openSmall();
    check("welcome");
    stage.scanGate.shut();
    app->scan();
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("scannedFiles")) != QStringLiteral("0"); }));
    check("scanning");
    stage.scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("card-safe")); }));
    app->clean({"/v/b"}, CleanMode::permanent);
    app->clean({"/v/regenerable"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil(
        [&] { return shows(QStringLiteral("trashBanner")) && shows(QStringLiteral("freedBanner")); }));
    check("results");
    stage.classifyGate.shut();
    app->analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("batchProgress")); }));
    check("batch");
}

TEST_P(LayoutTest, WithoutAModelTheOverviewIsWhole) {
    stage.status = AIStatus{.unavailable = std::string(words().modelAbsence[2])};
    openSmall();
    check("welcome");
    scanAll();
    check("results");
}

TEST_P(LayoutTest, EveryListAndDetailIsWhole) {
    openSmall();
    check("nothing selected");
    scanAll();
    for (const SafetyLevel level : displayedSafetyLevels()) {
        model->setSidebar(SidebarItem{level});
        model->list()->selection()->press(0, Qt::NoModifier);
        ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("detailView")); }));
        check(std::string(info(level).rawValue).c_str());
    }
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->selectAll();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("multiSelection")); }));
    check("several");
    model->setSidebar(SidebarItem{});
    check("summary without a selection");
}

TEST_P(LayoutTest, DialogsAndMenusAreWhole) {
    openSmall();
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->press(0, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("removePermanently")); }));
    QMetaObject::invokeMethod(item(QStringLiteral("removePermanently")), "activate");
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmPermanent")); }));
    check("dialog");
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("confirmPermanent")); }));
    focus(QStringLiteral("rows"));
    key(Qt::Key_Menu);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("rowMenu")); }));
    for (const Qt::Key next : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right})
        key(next);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("levelMenu")); }));
    check("menu");
}

TEST_P(LayoutTest, BannersEndInTheirButtons) {
    openSmall();
    scanAll();
    app->clean({"/v/b"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("emptyTrash")); }));
    for (const int width : {window->minimumWidth(), 1320, 1800, 2400}) {
        window->resize(width, window->height());
        ASSERT_TRUE(waitUntil([&] { return item(QStringLiteral("columns"))->width() == width; }));
        place();
        for (const auto& [banner, button] :
             {std::pair("trashBanner", "emptyTrash"), std::pair("uncertainBanner", "analyzeAll")}) {
            const QQuickItem* around = item(QString::fromLatin1(banner));
            const QQuickItem* last = item(QString::fromLatin1(button));
            const double end = last->mapToItem(around, QPointF(last->width(), 0)).x();
            EXPECT_NEAR(around->width() - end, GetParam() == 13 ? 12 : 17, 1) << button << " at " << width;
        }
    }
}

/// Whatever a name's text direction, the list stays left-aligned.
TEST_P(LayoutTest, NamesOfEveryScriptBeginAtTheLeadingEdge) {
    const std::string name = "שלום עולם";
    stage.result = {finding("/v/" + name, SafetyLevel::safe, 888'888'888'888)};
    stage.result.front().children = {{.name = name, .size = 1}};
    stage.result.front().explanation = name;
    stage.current = name;
    const auto check = [&](int least) {
        place();
        int found = 0;
        forEachIn(*window->contentItem(), [&](const QQuickItem& item) {
            if (!item.property("text").toString().contains(u'ש') || !(isText(item) || isSelectable(item)))
                return;
            ++found;
            EXPECT_EQ(item.property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft))
                << item.objectName().toStdString() << " in " << item.parentItem()->metaObject()->className();
        });
        EXPECT_GE(found, least);
    };
    stage.scanGate.shut();
    openSmall();
    app->scan();
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("currentPath")).contains(u'ש'); }));
    check(1);
    stage.scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("largest-0")); }));
    check(1);
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->press(0, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("detailView")); }));
    check(6);  // title and path in the row and the detail column, the explanation, the contents
    click(QStringLiteral("removePermanently"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmPermanent")); }));
    check(7);
}

INSTANTIATE_TEST_SUITE_P(Letters, LayoutTest, testing::Values(13, 26));

}  // namespace
}  // namespace ulvak
