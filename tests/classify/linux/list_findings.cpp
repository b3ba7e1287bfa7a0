// Prints all findings of the user whose home folder is HOME, a line each: level, bytes, source, path, title.
// For measure.py.

#include <cstdio>
#include <iostream>

#include "core/safety_level.h"
#include "core/text.h"
#include "survey/scanner.h"

int main() {
    const ulvak::UserFolders folders = ulvak::UserFolders::ofCurrentUser();
    ulvak::ScanProgress progress;
    const auto findings = ulvak::Scanner{progress, folders}.run();
    if (!findings)
        return 1;
    for (const ulvak::Finding& finding : *findings) {
        for (const std::string& path : finding.urls)
            std::cout << info(finding.level).rawValue << '\t' << finding.size << '\t'
                      << info(finding.source).label << '\t' << path << '\t' << ulvak::printable(finding.title)
                      << '\n';
    }
    return 0;
}
