#pragma once

#include <QByteArray>
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

#include "core/paths.h"
#include "platform/desktop.h"

namespace ulvak {

/// This program among those that the same user has started, over the same home folder and labels: one of them
/// has the window. And its end, as others ask for it.
///
/// Threads: the UI thread only.
class OneWindow {
public:
    /// With the program's own arguments. Before there is a window or anything that takes time.
    OneWindow(int argc, char* argv[], const UserFolders& folders);

    /// The window is another program's, and that has obeyed: nothing is left to do here. Says so on standard
    /// error when it is, but does not obey.
    [[nodiscard]] bool isElsewhere() const;

    /// Calls `obey` with the arguments of each later start, and with what lets a window come to the front
    /// then, for as long as `context` lives.
    void listen(QObject* context,
                std::function<void(const QStringList& arguments, const QByteArray& token)> obey);

    /// From here on another start has a window of its own.
    void leave() { instance_.reset(); }

    /// Calls `end` when a signal asks the program to end, for as long as `context` lives. Once.
    static void whenAskedToEnd(QObject* context, std::function<void()> end);
    /// Ends the program by that signal, if there was one.
    static void endAsAsked();

private:
    std::unique_ptr<platform::SingleInstance> instance_;
};

}  // namespace ulvak
