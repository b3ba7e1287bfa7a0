#include "platform/linux/trash_note.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>

#include "platform/linux/trash_world.h"

namespace ulvak::platform {

std::string notedPath(const std::string& location) {
    const std::string trash = parentOf(parentOf(location));
    const std::string note = test::textOf(trash + "/info/" + nameOf(location) + ".trashinfo");
    const std::string beginning = "[Trash Info]\nPath=";
    const std::string dated = "\nDeletionDate=";
    const std::size_t end = note.find(dated);
    if (!note.starts_with(beginning) || end == std::string::npos ||
        note.size() != end + dated.size() + std::string("2024-01-01T00:00:00\n").size())
        return "";
    const std::string encoded = note.substr(beginning.size(), end - beginning.size());
    std::string path;
    for (std::size_t at = 0; at < encoded.size(); ++at) {
        if (encoded[at] != '%') {
            path += encoded[at];
            continue;
        }
        path += static_cast<char>(std::stoi(encoded.substr(at + 1, 2), nullptr, 16));
        at += 2;
    }
    return path.starts_with('/') ? path
                                 : parentOf(trash.ends_with("/0") ? parentOf(trash) : trash) + "/" + path;
}

namespace {

using test::exists;

TEST(TrashName, IsTheItemsOwnAsLongAsItsNoteCanHaveIt) {
    EXPECT_EQ(trashName("düz.tar.gz", 1), "düz.tar.gz");
    EXPECT_EQ(trashName(std::string(245, 'n'), 1), std::string(245, 'n'));
    EXPECT_EQ(trashName(std::string(246, 'n'), 1), std::string(245, 'n'));
    EXPECT_EQ(trashName(std::string(255, 'n'), 1, 143), std::string(133, 'n'));
}

TEST(TrashName, FromTheSecondOnHasItsNumberBeforeTheExtension) {
    EXPECT_EQ(trashName("rapor.pdf", 2), "rapor.2.pdf");
    EXPECT_EQ(trashName("rapor", 12), "rapor.12");
    EXPECT_EQ(trashName(".gizli", 3), ".gizli.3");
    EXPECT_EQ(trashName("a." + std::string(20, 'x'), 2), "a." + std::string(20, 'x') + ".2");
    EXPECT_EQ(trashName(std::string(251, 'n') + ".pdf", 5000), std::string(236, 'n') + ".5000.pdf");
}

TEST(TrashName, CutsNoCharacterThrough) {
    std::string text = "x";
    while (text.size() < 255)
        text += "ğ";
    EXPECT_EQ(trashName(text, 1), text.substr(0, 245));
    EXPECT_EQ(trashName("y" + text.substr(0, 254), 1), "y" + text.substr(0, 243));
    EXPECT_EQ(trashName(std::string(255, '\x80'), 1).size(), 245U) << "no UTF-8: bytes";
}

TEST(FreeNumber, IsFoundInFewQuestions) {
    for (const int taken : {0, 1, 2, 3, 4, 5, 100, 4999, 5000, 1'000'000}) {
        int questions = 0;
        const int number = freeNumber([&](int candidate) {
            ++questions;
            return candidate <= taken;
        });
        EXPECT_EQ(number, taken + 1);
        EXPECT_LE(questions, 42);
    }
}

TEST(NoteText, IsPlainAsciiWithTheLocalTime) {
    const test::ScopedEnvironment environment({{"TZ", "Europe/Istanbul"}, {"LC_ALL", "tr_TR.UTF-8"}});
    ::tzset();
    EXPECT_EQ(noteText("/a b/%ğ\n\xff;'~", 1'700'000'000),
              "[Trash Info]\nPath=/a%20b/%25%C4%9F%0A%FF%3B%27~\nDeletionDate=2023-11-15T01:13:20\n");
}

TEST(TrashNote, GoesWithTheObjectUnlessItIsKept) {
    const test::TempTree tree;
    const auto notes = Directory::open(tree.path());
    ASSERT_TRUE(notes);
    {
        const auto note = TrashNote::write(*notes, "a", "text");
        ASSERT_TRUE(note);
        EXPECT_EQ(test::textOf(tree.path("a")), "text");
        struct stat info{};
        ASSERT_EQ(::lstat(tree.path("a").c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 0777U, 0600U);
        const auto second = TrashNote::write(*notes, "a", "other");
        ASSERT_FALSE(second);
        EXPECT_EQ(second.error(), std::errc::file_exists);
        EXPECT_TRUE(note->isThere());
        ASSERT_EQ(::unlink(tree.path("a").c_str()), 0);
        EXPECT_FALSE(note->isThere());
    }
    {
        auto kept = TrashNote::write(*notes, "a", "text");
        ASSERT_TRUE(kept);
        kept->keep();
    }
    EXPECT_TRUE(exists(tree.path("a")));
}

}  // namespace
}  // namespace ulvak::platform
