#include "classify/specificity.h"

#include <algorithm>
#include <cstddef>

namespace ulvak {

std::uint16_t componentSpecificity(std::string_view component) {
    if (component == "*")
        return 0;
    if (component.find_first_of("*?[") == std::string_view::npos)
        return literalSpecificity;
    std::size_t characters = 1;
    for (std::size_t i = 0; i < component.size(); ++i) {
        if (component[i] == '[') {
            const std::size_t end = component.find(']', i + 1);
            if (end == std::string_view::npos)
                break;
            i = end;
        } else if (component[i] != '*' && component[i] != '?') {
            ++characters;
        }
    }
    return static_cast<std::uint16_t>(std::min(characters, std::size_t{literalSpecificity} - 1));
}

Specificity specificity(std::string_view pattern) {
    const std::size_t slash = pattern.find('/');
    // A name's pattern has no "/" before its first component.
    const bool isPath = pattern.starts_with('/') || pattern.starts_with('~') || pattern.starts_with('$');
    if (isPath)
        pattern = slash == std::string_view::npos ? std::string_view() : pattern.substr(slash + 1);
    Specificity result;
    if (isPath && slash == std::string_view::npos)
        return result;
    for (;;) {
        const std::size_t end = std::min(pattern.find('/'), pattern.size());
        result.push_back(componentSpecificity(pattern.substr(0, end)));
        if (end == pattern.size())
            return result;
        pattern.remove_prefix(end + 1);
    }
}

std::vector<std::string_view> components(std::string_view rest) {
    std::vector<std::string_view> result;
    if (rest.empty())
        return result;
    result.reserve(static_cast<std::size_t>(std::ranges::count(rest, '/')));
    rest.remove_prefix(1);
    for (;;) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        result.push_back(rest.substr(0, end));
        if (end == rest.size())
            return result;
        rest.remove_prefix(end + 1);
    }
}

}  // namespace ulvak
