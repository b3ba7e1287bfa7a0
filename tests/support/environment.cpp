#include "support/environment.h"

#include <cstdlib>
#include <ranges>

namespace ulvak::test {
namespace {

void assign(const ScopedEnvironment::Variable& variable) {
    const auto& [name, value] = variable;
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

}  // namespace

ScopedEnvironment::ScopedEnvironment(std::initializer_list<Variable> variables) {
    for (const Variable& variable : variables) {
        const char* value = std::getenv(variable.first.c_str());
        before_.emplace_back(variable.first,
                             value == nullptr ? std::nullopt : std::optional<std::string>(value));
        assign(variable);
    }
}

ScopedEnvironment::~ScopedEnvironment() {
    for (const Variable& variable : before_ | std::views::reverse)
        assign(variable);
}

}  // namespace ulvak::test
