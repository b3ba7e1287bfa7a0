#include "ui/records.h"

#include "ui/texts.h"

namespace ulvak {

LevelInfo LevelInfo::of(SafetyLevel level) {
    const SafetyLevelInfo& about = info(level);
    const QString title = Texts::fixed(about.title);
    return {.level = Level::Value(level),
            .name = Texts::fixed(about.rawValue),
            .title = title,
            .shortTitle = level == SafetyLevel::safe ? QStringLiteral("Güvenli") : title,
            .symbol = Texts::fixed(about.symbol),
            .color = Texts::fixed(about.color),
            .summary = Texts::fixed(about.summary)};
}

}  // namespace ulvak
