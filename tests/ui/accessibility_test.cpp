#include <gtest/gtest.h>

#include <QAccessible>
#include <QSet>
#include <algorithm>

#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::uncleanable;
using test::waitUntil;

bool isControl(QAccessible::Role role) {
    static const QSet<QAccessible::Role> controls = {QAccessible::Button,   QAccessible::ButtonMenu,
                                                     QAccessible::ListItem, QAccessible::EditableText,
                                                     QAccessible::List,     QAccessible::MenuItem};
    return controls.contains(role);
}

class AccessibilityTest : public test::WindowTest {
protected:
    void openDetail() {
        stage.result = {guessed(finding("/v/a", SafetyLevel::safe, 2)),
                        finding("/v/b", SafetyLevel::safe, 1)};
        openScanned(QStringLiteral("safe"));
        click(row(QStringLiteral("a")));
    }

    /// Visits every visible item exposed to screen readers as a control.
    void forEachControl(QQuickItem* root,
                        const std::function<void(QQuickItem*, QAccessibleInterface*)>& visit) {
        if (!root->isVisible())
            return;
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(root);
        if (told != nullptr && isControl(told->role()))
            visit(root, told);
        for (QQuickItem* child : root->childItems())
            forEachControl(child, visit);
    }
    /// Every visible text is exposed: it, an ancestor or a sibling has its words as a name or description.
    void checkTold(const char* page) {
        SCOPED_TRACE(page);
        forEach(window->contentItem(), [&](QQuickItem* item) {
            const QString words = item->property("text").toString();
            const bool isShown = (item->inherits("QQuickText") || item->inherits("ulvak::FigureText")) &&
                                 !words.isEmpty() && item->width() > 0;
            EXPECT_TRUE(!isShown || isTold(item, words)) << words.toStdString();
        });
    }
    static bool isTold(QQuickItem* item, const QString& words) {
        const auto tells = [&](QQuickItem* one) {
            QAccessibleInterface* told = QAccessible::queryAccessibleInterface(one);
            return told != nullptr && (told->text(QAccessible::Name).contains(words) ||
                                       told->text(QAccessible::Description).contains(words));
        };
        if (std::ranges::any_of(item->parentItem()->childItems(), tells))
            return true;
        for (; item != nullptr; item = item->parentItem()) {
            if (tells(item))
                return true;
        }
        return false;
    }
    /// Returns the number of visible texts that contain markup; checks that each shows it literally.
    int checkPlain() {
        settle();
        int count = 0;
        forEach(window->contentItem(), [&](QQuickItem* item) {
            const QVariant format = item->property("textFormat");
            if (!format.isValid() || !item->property("text").toString().contains(u'<'))
                return;
            ++count;
            EXPECT_EQ(format.toInt(), int(Qt::PlainText)) << item->property("text").toString().toStdString();
        });
        return count;
    }
    static void forEach(QQuickItem* root, const std::function<void(QQuickItem*)>& visit) {
        if (!root->isVisible())
            return;
        visit(root);
        for (QQuickItem* child : root->childItems())
            forEach(child, visit);
    }
    int checkNames() {
        int controls = 0;
        forEachControl(window->contentItem(), [&](QQuickItem* item, QAccessibleInterface* told) {
            ++controls;
            EXPECT_FALSE(told->text(QAccessible::Name).isEmpty())
                << item->objectName().toStdString() << " " << item->metaObject()->className();
        });
        return controls;
    }
};

TEST_F(AccessibilityTest, EveryControlOfEveryFaceHasAName) {
    open();
    EXPECT_GE(checkNames(), 9);
    scanAll();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("card-safe")); }));
    EXPECT_GE(checkNames(), 13);
}

TEST_F(AccessibilityTest, EveryControlOfListAndDetailHasAName) {
    openDetail();
    EXPECT_GE(checkNames(), 16);
}

/// The list pools its items for reuse.
TEST_F(AccessibilityTest, ARowThatHasGoneIsNotTold) {
    openDetail();
    const auto told = [&] {
        QStringList names;
        QAccessibleInterface* rows = QAccessible::queryAccessibleInterface(item(QStringLiteral("rows")));
        for (int index = 0; index < rows->childCount(); ++index) {
            if (rows->child(index)->role() == QAccessible::ListItem && !rows->child(index)->state().invisible)
                names.append(rows->child(index)->text(QAccessible::Name).section(u',', 0, 0));
        }
        return names;
    };
    EXPECT_EQ(told(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    click(QStringLiteral("moveToTrash"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_TRUE(waitUntil([&] { return told() == QStringList(QStringLiteral("b")); }))
        << told().join(u' ').toStdString();
}

TEST_F(AccessibilityTest, RowsSayWhatTheyShowAndWhetherTheyAreSelected) {
    openDetail();
    const auto told = [&](const char* title) {
        return QAccessible::queryAccessibleInterface(row(QString::fromLatin1(title)));
    };
    EXPECT_EQ(told("a")->role(), QAccessible::ListItem);
    EXPECT_EQ(told("a")->text(QAccessible::Name), QStringLiteral("a, 2 bayt, /v/a, Tahmin"));
    EXPECT_TRUE(told("a")->state().selected);
    EXPECT_FALSE(told("b")->state().selected);
}

TEST_F(AccessibilityTest, EveryTextIsTold) {
    Finding full = guessed(finding("/v/a", SafetyLevel::safe, 2'000'000'000));
    full.quitApps = {"Bir Uygulama"};
    for (int number = 0; number < 13; ++number)
        full.children.push_back({.name = "çocuk " + std::to_string(number), .size = 1000});
    stage.result = {full, uncleanable(finding("/v/b", SafetyLevel::safe, 1), "Sistem yönetir.")};
    stage.denied = 3;
    open();
    checkTold("welcome");
    scanAll();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("card-safe")); }));
    checkTold("results");
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->press(0, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("detailView")); }));
    checkTold("one");
    model->list()->selection()->press(1, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("reason")); }));
    checkTold("none");
    model->list()->selection()->selectAll();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("multiSelection")); }));
    checkTold("several");
    model->setSidebar(SidebarItem{SafetyLevel::keep});
    checkTold("empty");
}

TEST_F(AccessibilityTest, NoTextThatADiskOrAModelCanWriteIsMarkup) {
    const std::string mark = "<b>im</b>";
    Finding full = guessed(finding("/v/" + mark + "/x", SafetyLevel::safe, 2));
    full.title = full.explanation = mark;
    full.quitApps = {mark};
    full.children = {{.name = mark, .size = 1}};
    stage.result = {full, uncleanable(finding("/v/b", SafetyLevel::safe, 1), mark)};
    stage.current = "/" + mark;
    stage.status = AIStatus{.unavailable = mark, .hint = mark};
    stage.scanGate.shut();
    open({QStringLiteral("--autoscan")});
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("currentPath")).contains(u'<'); }));
    EXPECT_GE(checkPlain(), 1);
    stage.scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("largest-0")); }));
    EXPECT_GE(checkPlain(), 2);
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->press(0, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("detailView")); }));
    // Two in the row; title, explanation, note, model, content and path in the detail column.
    EXPECT_GE(checkPlain(), 8);
    model->list()->selection()->press(1, Qt::NoModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("reason")); }));
    EXPECT_GE(checkPlain(), 3);
    stage.running = {mark};
    app->clean({full.id}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("alert")); }));
    EXPECT_GE(checkPlain(), 5);
}

TEST_F(AccessibilityTest, TabGoesRoundThroughEveryControlAndBack) {
    openDetail();
    focus(QStringLiteral("sidebar"));
    QStringList forth;
    do {
        forth.append(focused());
        key(Qt::Key_Tab);
    } while (focused() != QStringLiteral("sidebar") && forth.size() < 40);
    for (const char* name :
         {"sidebar", "analyzeList", "rows", "detailTitle", "explanation", "moveToTrash", "removePermanently",
          "revealButton", "relabel", "note", "analyze", "scan", "menuButton"})
        EXPECT_TRUE(forth.contains(QString::fromLatin1(name)))
            << name << " in " << forth.join(u' ').toStdString();
    EXPECT_LT(forth.size(), 25);
    EXPECT_LT(forth.indexOf(QStringLiteral("rows")), forth.indexOf(QStringLiteral("moveToTrash")));
    QStringList back;
    do {
        back.prepend(focused());
        key(Qt::Key_Backtab, Qt::ShiftModifier);
    } while (focused() != QStringLiteral("sidebar") && back.size() < 40);
    for (const QString& name : forth)
        EXPECT_TRUE(back.contains(name)) << name.toStdString() << " in " << back.join(u' ').toStdString();
}

TEST_F(AccessibilityTest, TheFocusCanBeSeen) {
    openDetail();
    for (const char* name : {"sidebar", "rows", "moveToTrash", "scan", "note", "explanation", "relabel"}) {
        const QString other = QString::fromLatin1(name) == QStringLiteral("sidebar")
                                  ? QStringLiteral("scan")
                                  : QStringLiteral("sidebar");
        focus(other);
        QCoreApplication::processEvents();
        const QImage before = window->grabWindow();
        QQuickItem* control = item(QString::fromLatin1(name));
        const QRect place =
            control->mapRectToScene(control->boundingRect()).toAlignedRect().adjusted(-5, -5, 5, 5);
        focus(QString::fromLatin1(name));
        QCoreApplication::processEvents();
        EXPECT_NE(before.copy(place), window->grabWindow().copy(place)) << name;
    }
}

}  // namespace
}  // namespace ulvak
