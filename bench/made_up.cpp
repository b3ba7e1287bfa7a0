#include "made_up.h"

#include <cstdint>
#include <random>
#include <string>
#include <utility>

namespace ulvak {

Finding madeUp(std::size_t number, std::string_view folder) {
    const std::string path =
        std::string(folder) + "/Library/Application Support/Uygulama " + std::to_string(number) + "/Önbellek";
    Finding finding;
    finding.id = path;
    finding.urls = {path};
    finding.size = static_cast<std::int64_t>(number) * 1'000'003;
    finding.original = {.level = allSafetyLevels[number % allSafetyLevels.size()],
                        .title = "Uygulama önbelleği " + std::to_string(number),
                        .explanation =
                            "Uygulamanın yeniden oluşturabildiği dosyalar. Silinirse ilk açılış "
                            "biraz daha uzun sürer, başka bir şey değişmez."};
    resetVerdict(finding);
    for (int i = 0; i < 12; ++i)
        finding.children.push_back({.name = "içindeki öğe " + std::to_string(i), .size = 1000});
    for (int i = 0; i < 10; ++i)
        finding.siblings.push_back({.name = "yanındaki öğe " + std::to_string(i), .size = 1000});
    finding.parentPath = folder;
    return finding;
}

std::vector<std::size_t> shuffled(std::vector<std::size_t> numbers, unsigned seed) {
    std::mt19937 engine(seed);
    for (std::size_t i = numbers.size(); i > 1; --i)
        std::swap(numbers[i - 1], numbers[engine() % i]);
    return numbers;
}

}  // namespace ulvak
