#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ulvak::test {

/// Sets environment variables, unsetting those without a value; restores the old values at the end.
class ScopedEnvironment {
public:
    using Variable = std::pair<std::string, std::optional<std::string>>;

    ScopedEnvironment(std::initializer_list<Variable> variables);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::vector<Variable> before_;
};

}  // namespace ulvak::test
