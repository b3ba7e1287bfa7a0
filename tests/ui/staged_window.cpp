#include "ui/staged_window.h"

#include <QSignalSpy>
#include <QtTest>
#include <algorithm>
#include <ranges>
#include <tuple>

#include "ui/open_window.h"
#include "ui/shown.h"

namespace ulvak::test {
namespace {

QStringList* collected = nullptr;

/// Warnings not caused by the program: about the user's folders, and Qt's animation bookkeeping when a window
/// is destroyed between two frames.
bool isNobodys(const QString& text) {
    return text.startsWith(QStringLiteral("QStandardPaths: ")) ||
           text == QStringLiteral("QUnifiedTimer::stopAnimationDriver: driver is not running");
}

void collect(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (collected != nullptr && type != QtDebugMsg && type != QtInfoMsg && !isNobodys(text))
        collected->append(text);
}

QQuickItem* lastNamed(QQuickItem* root, const QString& name) {
    if (!root->isVisible())
        return nullptr;
    const auto children = root->childItems();
    for (QQuickItem* child : children | std::views::reverse) {
        if (QQuickItem* found = lastNamed(child, name))
            return found;
    }
    return root->objectName() == name ? root : nullptr;
}

bool anyReads(QQuickItem* root, const QString& text) {
    if (!root->isVisible())
        return false;
    if (root->property("text").toString() == text)
        return true;
    return std::ranges::any_of(root->childItems(), [&](QQuickItem* child) { return anyReads(child, text); });
}

}  // namespace

void ModelTest::start() {
    app = std::make_unique<AppModel>(stage.services, tree.path("verdicts.json"));
    model = std::make_unique<WindowModel>(*app);
    if (stage.status.isAvailable()) {
        ASSERT_TRUE(waitUntil([this] { return app->aiStatus().isAvailable(); }));
    } else {
        ASSERT_TRUE(waitUntil([this] { return app->aiStatus() == stage.status; }));
    }
}

void ModelTest::scanAll() {
    app->scan();
    ASSERT_TRUE(waitUntil([this] { return app->phase() == AppModel::Phase::done; }));
}

ModelTest::~ModelTest() {
    stage.openGates();
}

WindowTest::WindowTest() {
    collected = &warnings;
    qInstallMessageHandler(collect);
}

WindowTest::~WindowTest() {
    engine.reset();
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join(u'\n').toStdString();
    qInstallMessageHandler(nullptr);
    collected = nullptr;
}

void WindowTest::open(const QStringList& arguments) {
    start();
    engine = std::make_unique<QQmlApplicationEngine>();
    window = openWindow(
        *engine, *model,
        {{QStringLiteral("appearance"), QStringLiteral("light")}, {QStringLiteral("reducedMotion"), true}});
    ASSERT_NE(window, nullptr) << warnings.join(u'\n').toStdString();
    window->requestActivate();
    ASSERT_TRUE(waitUntil([this] { return window->isActive(); }));
    model->launch(arguments);
}

void WindowTest::openScanned(const QString& level) {
    open();
    scanAll();
    if (!level.isEmpty())
        model->setSidebar(SidebarItem{safetyLevel(level.toStdString()).value()});
    ASSERT_TRUE(waitUntil([&] {
        if (level.isEmpty())
            return shows(QStringLiteral("card-safe"));
        const FindingPointer first = model->list()->rows()->at(0);
        return shows(QStringLiteral("findingList")) && (!first || row(shown(first->title)) != nullptr);
    }));
}

QQuickItem* WindowTest::item(const QString& name) const {
    return lastNamed(window->contentItem(), name);
}

bool WindowTest::showsText(const QString& text) const {
    return anyReads(window->contentItem(), text);
}

QString WindowTest::text(const QString& name) const {
    const QQuickItem* found = item(name);
    return found != nullptr ? found->property("text").toString() : QStringLiteral("(no ") + name + u')';
}

bool WindowTest::isEnabled(const QString& name) const {
    const QQuickItem* found = item(name);
    return found != nullptr && found->isEnabled();
}

QObject* WindowTest::popup(const QString& name) const {
    return window->findChild<QObject*>(name);
}

bool WindowTest::isOpen(const QString& popupName) const {
    const QObject* found = popup(popupName);
    return found != nullptr && found->property("opened").toBool();
}

QQuickItem* WindowTest::inPopup(const QString& popupName, const QString& name) const {
    const QObject* found = popup(popupName);
    auto* content = found != nullptr ? found->property("contentItem").value<QQuickItem*>() : nullptr;
    return content != nullptr ? lastNamed(content, name) : nullptr;
}

QQuickItem* WindowTest::row(const QString& title) const {
    const QQuickItem* rows = item(QStringLiteral("rows"));
    if (rows == nullptr)
        return nullptr;
    for (QQuickItem* child : rows->property("contentItem").value<QQuickItem*>()->childItems()) {
        if (child->isVisible() && child->property("title").toString() == title)
            return child;
    }
    return nullptr;
}

int WindowTest::rowCount() const {
    const QQuickItem* rows = item(QStringLiteral("rows"));
    return rows == nullptr ? 0 : rows->property("count").toInt();
}

void WindowTest::click(QQuickItem* item, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    ASSERT_NE(item, nullptr);
    settle();
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseMove(window, centre.toPoint());
    QTest::mouseClick(window, button, modifiers, centre.toPoint());
}

void WindowTest::settle() {
    QCoreApplication::processEvents();
    std::ignore = window->grabWindow();
}

void WindowTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window, key, modifiers);
}

void WindowTest::type(const QString& letters) {
    for (const QChar letter : letters) {
        for (const QEvent::Type event : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent key(event, letter == u' ' ? Qt::Key_Space : Qt::Key_unknown, Qt::NoModifier, letter);
            QCoreApplication::sendEvent(window, &key);
        }
    }
}

void WindowTest::focus(const QString& name) {
    QQuickItem* found = item(name);
    ASSERT_NE(found, nullptr) << name.toStdString();
    found->forceActiveFocus(Qt::TabFocusReason);
    ASSERT_TRUE(found->hasActiveFocus()) << name.toStdString();
}

QString WindowTest::focused() const {
    for (const QQuickItem* item = window->activeFocusItem(); item != nullptr; item = item->parentItem()) {
        if (!item->objectName().isEmpty())
            return item->objectName();
    }
    return {};
}

}  // namespace ulvak::test
