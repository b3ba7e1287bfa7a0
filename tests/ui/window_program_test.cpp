#include <gtest/gtest.h>
#include <unistd.h>

#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <csignal>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/open_watch.h"
#include "support/temp_tree.h"
#include "ui/staged_window.h"

// The window program as separate processes: one window per user, and what exiting waits for.

namespace ulvak {
namespace {

using test::folder;
using test::TempTree;
using test::waitUntil;

constexpr int maxEnd = 60'000;  // milliseconds

class WindowProgram : public testing::Test {
protected:
    WindowProgram() {
        for (const auto& [name, value] :
             {std::pair("HOME", tree.path("home")), std::pair("TMPDIR", tree.path("tmp")),
              std::pair("XDG_DATA_HOME", tree.path("home/data")),
              std::pair("XDG_RUNTIME_DIR", tree.path("run"))})
            environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
        environment.insert(QStringLiteral("ULVAK_MODEL_OFF"), QStringLiteral("1"));
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
        environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
    }
    ~WindowProgram() override {
        for (const auto& process : processes_) {
            if (process->state() != QProcess::NotRunning) {
                ::kill(static_cast<pid_t>(process->processId()), SIGCONT);
                process->kill();
                process->waitForFinished(maxEnd);
            }
        }
    }

    /// Starts a private session bus.
    void startBus() {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        ASSERT_FALSE(daemon.isEmpty()) << "the package dbus-daemon is missing";
        const QString address = QStringLiteral("unix:path=") + QString::fromStdString(tree.path("run/bus"));
        QProcess& bus =
            begin(daemon, {QStringLiteral("--session"), QStringLiteral("--nofork"),
                           QStringLiteral("--print-address"), QStringLiteral("--address=") + address});
        ASSERT_TRUE(waitUntil([&] { return bus.canReadLine(); }));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    }
    QProcess& begin(const QString& program, const QStringList& arguments) {
        auto& process = *processes_.emplace_back(std::make_unique<QProcess>());
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForStarted(maxEnd));
        return process;
    }
    QProcess& start(const QStringList& arguments = {}) {
        return begin(QStringLiteral(ULVAK_WINDOW_PROGRAM), arguments);
    }
    /// Starts a process that has the window: it has created the labels folder and is about to enter the event
    /// loop.
    QProcess& startFirst(const QStringList& arguments = {}) {
        QProcess& first = start(arguments);
        EXPECT_TRUE(waitUntil([&] { return ::access(labelsFolder().c_str(), F_OK) == 0; }));
        return first;
    }
    static void expectHandedOver(QProcess& second) {
        ASSERT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
        EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(second.exitCode(), 0);
        EXPECT_EQ(second.readAllStandardError().toStdString(), "");
    }
    [[nodiscard]] std::string labelsFolder() const { return tree.path("home/data/Ulvak"); }
    /// Whether the program got past startup: one that hands over would have exited by now.
    static bool staysOpen(QProcess& process) { return !process.waitForFinished(1500); }

    TempTree tree{{folder("home", {folder("data")}), folder("tmp"), folder("run").withMode(0700)}};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();

private:
    std::vector<std::unique_ptr<QProcess>> processes_;
};

TEST_F(WindowProgram, ASecondStartHandsOverToTheFirst) {
    startBus();
    QProcess& first = startFirst();
    expectHandedOver(start());
    expectHandedOver(start({QStringLiteral("--level=safe"), QStringLiteral("--autoscan")}));
    EXPECT_EQ(first.state(), QProcess::Running);
}

TEST_F(WindowProgram, OfManyThatStartAtOnceOneStays) {
    startBus();
    std::vector<QProcess*> all;
    for (int i = 0; i < 5; ++i)
        all.push_back(&start());
    const auto running = [&] {
        return std::ranges::count(all, QProcess::Running, [](const QProcess* one) { return one->state(); });
    };
    ASSERT_TRUE(waitUntil([&] { return running() == 1; }));
    for (QProcess* one : all)
        EXPECT_EQ(one->readAllStandardError().toStdString(), "");
}

TEST_F(WindowProgram, TheNextIsFirstWhenTheFirstIsKilled) {
    startBus();
    QProcess& first = startFirst();
    first.kill();
    ASSERT_TRUE(first.waitForFinished(maxEnd));
    QProcess& second = start();
    EXPECT_TRUE(staysOpen(second));
    expectHandedOver(start());
}

TEST_F(WindowProgram, AFirstThatDoesNotAnswerIsNotWaitedForForGood) {
    startBus();
    QProcess& first = startFirst();
    expectHandedOver(start());
    ASSERT_EQ(::kill(static_cast<pid_t>(first.processId()), SIGSTOP), 0);
    QProcess& second = start();
    QString said;
    ASSERT_TRUE(waitUntil([&] {
        said += QString::fromUtf8(second.readAllStandardError());
        return said.contains(QStringLiteral("yanıt vermiyor"));
    }));
    EXPECT_EQ(second.state(), QProcess::Running) << "the user gets a window all the same";
}

TEST_F(WindowProgram, AnotherHomeHasAnotherWindow) {
    startBus();
    startFirst();
    expectHandedOver(start());
    environment.insert(QStringLiteral("XDG_DATA_HOME"), QString::fromStdString(tree.path("other")));
    QProcess& other = start();
    EXPECT_TRUE(staysOpen(other));
    expectHandedOver(start());
    environment.insert(QStringLiteral("HOME"), QString::fromStdString(tree.path("tmp")));
    EXPECT_TRUE(staysOpen(start()));
}

TEST_F(WindowProgram, WithoutABusItJustStarts) {
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=/nonexistent/bus"));
    EXPECT_TRUE(staysOpen(startFirst()));
    EXPECT_TRUE(staysOpen(start()));
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    EXPECT_TRUE(staysOpen(start()));
}

TEST_F(WindowProgram, WhatIsHandedOverIsDoneThere) {
    if (const auto reason = test::OpenWatch::whyNone())
        GTEST_SKIP() << *reason;
    startBus();
    tree.add("home", {folder("klasör", {folder("içinde")})});
    const QProcess& first = startFirst();
    expectHandedOver(start({QStringLiteral("--level=safe")}));
    const test::OpenWatch watch(tree.path("home/klasör"));
    ASSERT_TRUE(watch.isWatching());
    expectHandedOver(start({QStringLiteral("--autoscan")}));
    EXPECT_TRUE(waitUntil([&] { return !watch.opened().empty(); })) << "it was to scan";
    EXPECT_EQ(first.state(), QProcess::Running);
}

TEST_F(WindowProgram, EndsByTheSignalThatItWasSent) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        QProcess& process = startFirst();
        ASSERT_TRUE(staysOpen(process));
        ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        ASSERT_TRUE(process.waitForFinished(maxEnd));
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit) << "whoever sent it can see that";
        EXPECT_EQ(process.exitCode(), signal);
    }
}

}  // namespace
}  // namespace ulvak
