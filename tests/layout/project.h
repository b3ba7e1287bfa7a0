#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace ulvak::test {

/// The project's folder.
inline std::filesystem::path project() {
    return ULVAK_SOURCE_DIR;
}

/// What the file holds; nothing where there is none.
inline std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace ulvak::test
