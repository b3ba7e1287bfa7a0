#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace ulvak::platform {

/// Whether the user wants programs to be light or dark.
enum class ColorScheme : std::uint8_t { unsaid, light, dark };

/// Asks the desktop for that, and listens to it for as long as this lives. For what a toolkit does not know
/// by itself.
///
/// Threads: `changed` is called on a thread of this object's own: when the desktop has answered, whenever the
/// wish changes, and never again once the destructor has returned. It must not wait for whoever destroys
/// this. Where nobody answers it is not called; neither end waits for the desktop.
class ColorSchemeWatch {
public:
    using Changed = std::function<void(ColorScheme)>;

    explicit ColorSchemeWatch(Changed changed);
    ~ColorSchemeWatch();
    ColorSchemeWatch(const ColorSchemeWatch&) = delete;
    ColorSchemeWatch& operator=(const ColorSchemeWatch&) = delete;

private:
    class Desktop;
    std::shared_ptr<Desktop> desktop_;
};

}  // namespace ulvak::platform
