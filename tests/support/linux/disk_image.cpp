#include "support/linux/disk_image.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <span>

#include "platform/process.h"

#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak::test {

bool hasRun(const std::vector<std::string>& words) {
    const auto result = platform::runProgram(words.front(), std::span(words).subspan(1));
    return result && result->status == 0;
}

testing::AssertionResult mountImage(const std::string& image, const std::string& path, std::int64_t bytes) {
    std::ofstream(image).close();
    std::error_code error;
    std::filesystem::resize_file(image, static_cast<std::uintmax_t>(bytes), error);
    if (error || !hasRun({"/usr/sbin/mkfs.ext4", "-q", "-F", "-m", "0", image}))
        return testing::AssertionFailure() << "no file system can be made in " << image;
    if (!hasRun({"/usr/bin/mount", "-o", "loop", image, path}))
        return testing::AssertionFailure() << image << " cannot be mounted";
    ::chmod(path.c_str(), 0777);
    // Part of the file system; it would disturb tests that count entries.
    std::filesystem::remove(path + "/lost+found", error);
    return testing::AssertionSuccess();
}

std::optional<std::string> whyNoDiskImages() {
    if (auto reason = whyNoPrivateMounts())
        return reason;
    const TempTree tree({folder("disk")});
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0)
        return "no pipe";
    withPrivateMounts([&] {
        const char answer = mountImage(tree.path("image"), tree.path("disk")) ? '1' : '0';
        (void)!::write(ends[1], &answer, 1);
    });
    char answer = '0';
    const bool isMounted = ::read(ends[0], &answer, 1) == 1 && answer == '1';
    ::close(ends[0]);
    ::close(ends[1]);
    if (!isMounted)
        return "no image of a disk can be mounted here";
    return std::nullopt;
}

}  // namespace ulvak::test
