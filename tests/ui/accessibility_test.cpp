#include <gtest/gtest.h>

#include <QAccessible>
#include <QSet>

#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
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

    /// Every visible item that a screen reader is told about as a control.
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
