#pragma once

#include <QByteArray>
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

#include "core/paths.h"
#include "platform/desktop.h"

namespace ulvak {

/// Ensures one window among the programs the same user has started over the same home folder and labels. Also
/// handles requests from outside to exit.
///
/// Threads: the UI thread only.
class OneWindow {
public:
    /// Takes the program's own arguments. Call before making a window or doing anything slow.
    OneWindow(int argc, char* argv[], const UserFolders& folders);

    /// True if another process has the window and has taken over the request: nothing is left to do here. If
    /// that process exists but does not respond, says so on standard error.
    [[nodiscard]] bool isElsewhere() const;

    /// Calls `obey` with the arguments of each later launch and the token that lets a window come to the
    /// front, while `context` lives.
    void listen(QObject* context,
                std::function<void(const QStringList& arguments, const QByteArray& token)> obey);

    /// From here on, another launch gets a window of its own.
    void leave() { instance_.reset(); }

    /// Calls `end` once, when a signal asks the program to exit, while `context` lives.
    static void whenAskedToEnd(QObject* context, std::function<void()> end);
    /// Ends the program by that signal, if there was one.
    static void endAsAsked();

private:
    std::unique_ptr<platform::SingleInstance> instance_;
};

}  // namespace ulvak
