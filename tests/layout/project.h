#pragma once

#include <filesystem>

namespace ulvak::test {

/// The project's folder.
inline std::filesystem::path project() {
    return ULVAK_SOURCE_DIR;
}

}  // namespace ulvak::test
