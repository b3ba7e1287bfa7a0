#pragma once

#include <QObject>

#include "core/safety_level.h"

/// The levels, under names QML can use.
namespace ulvak::Level {

Q_NAMESPACE

// NOLINTBEGIN(readability-identifier-naming): QML sees only capitalised enumerators
enum class Value : int {
    Safe = static_cast<int>(SafetyLevel::safe),
    Regenerable = static_cast<int>(SafetyLevel::regenerable),
    Caution = static_cast<int>(SafetyLevel::caution),
    Keep = static_cast<int>(SafetyLevel::keep),
    Unknown = static_cast<int>(SafetyLevel::unknown),
};
// NOLINTEND(readability-identifier-naming)
Q_ENUM_NS(Value)

}  // namespace ulvak::Level
