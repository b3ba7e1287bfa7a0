// Permanently removes one item, as cleaning a finding does, for `ulvak_compare`.
//
//     ulvak_remove ITEM
//
// ITEM must be in the home folder named by the environment.

#include <cstdio>

#include "clean/cleaner.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("remove: name one item\n", stderr);
        return 1;
    }
    ulvak::Finding finding;
    finding.urls = {argv[1]};
    const ulvak::UserFolders folders = ulvak::UserFolders::ofCurrentUser();
    const auto freed = ulvak::Cleaner(folders).clean(finding, ulvak::CleanMode::permanent);
    if (!freed)
        std::fprintf(stderr, "remove: %s\n", ulvak::errorDescription(freed.error(), folders).c_str());
    return freed ? 0 : 1;
}
