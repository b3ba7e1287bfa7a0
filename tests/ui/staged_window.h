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

/// The application and what its window shows, without a window.
class ModelTest : public testing::Test {
protected:
    /// Once everything is staged.
    virtual void start();
    void scanAll();
    ~ModelTest() override;

    TempTree tree;
    StagedWorld stage;
    std::unique_ptr<AppModel> app;
    std::unique_ptr<WindowModel> model;
};

/// The real window over staged services. Fails when anything on the way gave a warning.
class WindowTest : public ModelTest {
protected:
    WindowTest();
    ~WindowTest() override;

    /// With the program's arguments.
    void open(const QStringList& arguments = {});
    /// With a result to look at, at a level's list when one is named.
    void openScanned(const QString& level = {});

    /// The visible item of that name; null when there is none. The last one wins: what lies on top.
    [[nodiscard]] QQuickItem* item(const QString& name) const;
    [[nodiscard]] bool shows(const QString& name) const { return item(name) != nullptr; }
    /// A visible text anywhere in the window that reads exactly so.
    [[nodiscard]] bool showsText(const QString& text) const;
    [[nodiscard]] QString text(const QString& name) const;
    [[nodiscard]] bool isEnabled(const QString& name) const;
    [[nodiscard]] QObject* popup(const QString& name) const;
    [[nodiscard]] bool isOpen(const QString& popupName) const;
    [[nodiscard]] QQuickItem* inPopup(const QString& popupName, const QString& name) const;
    /// The row of a list that shows this finding.
    [[nodiscard]] QQuickItem* row(const QString& title) const;
    [[nodiscard]] int rowCount() const;

    /// Lets everything find its place: a click goes to a place, not to an item.
    void settle();
    void click(QQuickItem* item, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(const QString& name) { click(item(name)); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// In no time: no event passes from one letter to the next.
    void type(const QString& letters);
    void focus(const QString& name);
    /// The name of the item with the keyboard, or of the nearest around it that has one.
    [[nodiscard]] QString focused() const;

    QStringList warnings;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;
};

}  // namespace ulvak::test
