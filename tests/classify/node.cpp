#include "node.h"

#include <algorithm>
#include <functional>
#include <ostream>
#include <utility>

#include "classify/rule_book.h"

namespace ulvak::test {

Node Node::modifiedAt(FileTime date) && {
    modified = date;
    return std::move(*this);
}

Node Node::withFiles(std::int64_t count) && {
    fileCount = count;
    return std::move(*this);
}

Node fileNode(std::string name, std::int64_t size) {
    return {.url = std::move(name), .size = size};
}

Node dir(std::string name, std::vector<Node> children) {
    std::int64_t size = 0;
    for (const Node& child : children)
        size += child.size;
    return dir(std::move(name), size, std::move(children));
}

Node dir(std::string name, std::int64_t size, std::vector<Node> children) {
    return {.url = std::move(name), .size = size, .isDirectory = true, .children = std::move(children)};
}

Node package(std::string name, std::int64_t size, std::vector<Node> children) {
    Node node = dir(std::move(name), size, std::move(children));
    node.isPackage = true;
    return node;
}

DirNode tree(const Node& node) {
    DirNode made;
    made.url = node.url;
    made.isDirectory = node.isDirectory;
    made.isPackage = node.isPackage;
    made.size = node.size;
    made.fileCount = node.fileCount;
    made.modified = node.modified;
    for (const Node& child : node.children)
        made.children.push_back(tree(child));
    std::ranges::stable_sort(made.children, std::ranges::greater(), &DirNode::size);
    return made;
}

Analyzer usualAnalyzer() {
    return {.rules = RuleBook::reference(),
            .simulators = {},
            .unitMinimum = unitMinimum,
            .defaultMinimum = defaultMinimum};
}

namespace {

std::vector<Finding> run(const Analyzer& analyzer, const std::vector<Node>& roots, const UserFolders& folders,
                         std::vector<std::string> innerRoots) {
    std::vector<DirNode> trees;
    std::ranges::transform(roots, std::back_inserter(trees), tree);
    return analyzer.run(trees, folders, std::move(innerRoots));
}

}  // namespace

std::vector<Finding> findings(const std::vector<Node>& roots, const UserFolders& folders,
                              std::vector<std::string> innerRoots) {
    return run(usualAnalyzer(), roots, folders, std::move(innerRoots));
}

std::vector<Finding> findings(const Node& root, const UserFolders& folders) {
    return findings(std::vector{root}, folders);
}

std::vector<Finding> findingsBy(std::vector<Rule> rules, const std::vector<Node>& roots) {
    Analyzer analyzer = usualAnalyzer();
    analyzer.rules = std::move(rules);
    return run(analyzer, roots, ayse, {});
}

std::vector<std::string> ids(const std::vector<Finding>& findings) {
    std::vector<std::string> result;
    std::ranges::transform(findings, std::back_inserter(result), &Finding::id);
    return result;
}

std::vector<std::string> titles(const std::vector<Finding>& findings) {
    std::vector<std::string> result;
    std::ranges::transform(findings, std::back_inserter(result), &Finding::title);
    return result;
}

}  // namespace ulvak::test

namespace ulvak {

void PrintTo(const ChildSummary& summary, std::ostream* stream) {
    *stream << summary.name << (summary.isDirectory ? "/ " : " ") << summary.size;
}

void PrintTo(SafetyLevel level, std::ostream* stream) {
    *stream << info(level).rawValue;
}

}  // namespace ulvak
