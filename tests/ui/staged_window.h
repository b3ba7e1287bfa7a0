#pragma once

#include <gtest/gtest.h>

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>
#include <memory>

#include "app/app_model.h"
#include "support/event_loop.h"
#include "support/findings.h"
#include "support/staged_world.h"
#include "support/temp_tree.h"
#include "ui/window_model.h"

namespace ulvak::test {

/// The application and its window's models, without a window.
class ModelTest : public testing::Test {
protected:
    /// Call once everything is staged.
    virtual void start();
    void scanAll();
    ~ModelTest() override;

    TempTree tree;
    StagedWorld stage;
    std::unique_ptr<AppModel> app;
    std::unique_ptr<WindowModel> model;
};

/// The real window over staged services. Fails if anything logs a warning.
class WindowTest : public ModelTest {
protected:
    WindowTest();
    ~WindowTest() override;

    /// Passes `arguments` as the program's.
    void open(const QStringList& arguments = {});
    /// Opens with a scan result, at a level's list if one is named.
    void openScanned(const QString& level = {});

    /// The visible item with this name, or null. If there are several, the last, which is on top.
    [[nodiscard]] QQuickItem* item(const QString& name) const;
    [[nodiscard]] bool shows(const QString& name) const { return item(name) != nullptr; }
    /// Whether any visible text in the window is exactly this.
    [[nodiscard]] bool showsText(const QString& text) const;
    [[nodiscard]] QString text(const QString& name) const;
    [[nodiscard]] bool isEnabled(const QString& name) const;
    [[nodiscard]] QObject* popup(const QString& name) const;
    [[nodiscard]] bool isOpen(const QString& popupName) const;
    [[nodiscard]] QQuickItem* inPopup(const QString& popupName, const QString& name) const;
    /// The list row that shows this finding.
    [[nodiscard]] QQuickItem* row(const QString& title) const;
    [[nodiscard]] int rowCount() const;

    /// Waits until the layout is done: a click goes to a position, not to an item.
    void settle();
    void click(QQuickItem* item, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(const QString& name) { click(item(name)); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// All at once: no events are processed between letters.
    void type(const QString& letters);
    void focus(const QString& name);
    /// The name of the focused item, or of its nearest named ancestor.
    [[nodiscard]] QString focused() const;

    QStringList warnings;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;
};

}  // namespace ulvak::test
