#include "ui/disk_model.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "core/checked_add.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

/// Free space below this counts as low.
constexpr std::int64_t lowSpace = 20'000'000'000;

std::int64_t usedBytes(const DiskInfo& disk) {
    std::int64_t used = disk.total;
    addChecked(used, -disk.available);
    return used;
}

}  // namespace

DiskModel::DiskModel(const AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    measureSegments();
    // Connected before any reader.
    for (const auto changed : {&AppModel::findingsChanged, &AppModel::diskChanged})
        connect(&app, changed, this, &DiskModel::measureSegments);
    connect(&app, &AppModel::diskChanged, this, &DiskModel::changed);
}

double DiskModel::usedFraction() const {
    const auto& disk = app_.disk();
    return disk && disk->total > 0 ? static_cast<double>(usedBytes(*disk)) / static_cast<double>(disk->total)
                                   : 0.0;
}

bool DiskModel::isLow() const {
    const auto& disk = app_.disk();
    return disk && disk->available < lowSpace;
}

QString DiskModel::text() const {
    const auto& disk = app_.disk();
    return disk ? Texts::bytes(disk->available) + QStringLiteral(" boş · ") + Texts::bytes(disk->total)
                : QString();
}

QString DiskModel::usedText() const {
    const auto& disk = app_.disk();
    return disk ? Texts::bytes(usedBytes(*disk)) + QStringLiteral(" kullanılıyor") : QString();
}

QString DiskModel::freeText() const {
    const auto& disk = app_.disk();
    return disk ? Texts::bytes(disk->available) + QStringLiteral(" boş") : QString();
}

void DiskModel::measureSegments() {
    std::vector<DiskSegment> segments;
    const auto& disk = app_.disk();
    const auto add = [&](std::string_view level, std::string_view color, std::int64_t bytes) {
        const double begin = segments.empty() ? 0 : segments.back().end;
        const double fraction =
            static_cast<double>(std::max<std::int64_t>(bytes, 0)) / static_cast<double>(disk->total);
        segments.push_back({.levelName = Texts::fixed(level),
                            .levelColor = Texts::fixed(color),
                            .fraction = fraction,
                            .begin = begin,
                            .end = begin + fraction});
    };
    if (disk && disk->total > 0) {
        std::int64_t explained = 0;
        for (const SafetyLevel level : displayedSafetyLevels()) {
            const std::int64_t bytes = app_.total(level);
            addChecked(explained, bytes);
            add(info(level).rawValue, info(level).color, bytes);
        }
        std::int64_t other = usedBytes(*disk);
        addChecked(other, -explained);
        add({}, {}, other);
    }
    segments_.assign(std::move(segments));
}

}  // namespace ulvak
