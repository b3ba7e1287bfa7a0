#pragma once

#include <string>
#include <system_error>

namespace ulvak::platform {

/// A change to the disk that failed, as the system reported it.
struct FileError {
    std::error_code code;  ///< `std::generic_category` wherever the system gave a number
    std::string path;      ///< what it failed at, bytes
    std::string detail;    ///< the service's own words, for people; empty when there is only the code
};

}  // namespace ulvak::platform
