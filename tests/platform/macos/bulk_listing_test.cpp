#include "platform/macos/bulk_listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <vector>

#include "platform/macos/bulk_buffer.h"

// Folders read in pieces, which the test can split at will.

namespace ulvak::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Piece {
    std::vector<Written> records;
    int count = 0;  ///< what the system call returns
    int error = 0;  ///< and its `errno`
};

Piece piece(std::vector<Written> records) {
    const auto count = static_cast<int>(records.size());
    return {.records = std::move(records), .count = count};
}

Piece failure(int error) {
    return {.count = -1, .error = error};
}

Written named(const char* name, std::uint32_t type = fileType) {
    return {.name = name, .type = type};
}

/// A folder returned piece by piece, in a buffer that still holds the remains of earlier pieces.
class Staged {
public:
    explicit Staged(std::vector<Piece> pieces) : pieces_(pieces.begin(), pieces.end()) {}

    BulkListing listing() { return {buffer_, position_, left_}; }
    BulkListing::Read read() {
        return [this](std::span<std::byte> buffer) {
            ++reads;
            if (pieces_.empty())
                return 0;
            const Piece next = std::move(pieces_.front());
            pieces_.pop_front();
            std::size_t end = 0;
            for (const Written& what : next.records) {
                const Bytes bytes = record(what);
                std::ranges::copy(bytes, buffer.data() + end);
                end += bytes.size();
            }
            std::ranges::fill(buffer.subspan(end), std::byte{0xFF});
            errno = next.error;
            return next.count;
        };
    }

    /// All remaining entries.
    std::vector<std::string> entries(const NameSet* excluded = nullptr) {
        std::vector<std::string> names;
        while (const auto entry = listing().nextEntry(read(), excluded, error))
            names.emplace_back(entry->name);
        return names;
    }

    /// All names, and the result of the last read.
    std::pair<std::vector<std::string>, int> names() {
        std::vector<std::string> names;
        int result = 0;
        while ((result = listing().readNames(read())) > 0) {
            while (const auto found = listing().nextName())
                names.emplace_back(found->name);
        }
        return {names, result};
    }

    std::error_code error;
    int reads = 0;

private:
    std::deque<Piece> pieces_;
    Bytes buffer_ = Bytes(4096);
    std::size_t position_ = 0;
    std::size_t left_ = 0;
};

TEST(BulkListing, GivesTheEntriesOfAllPieces) {
    Staged folder({piece({named("a"), named("b"), named("c")}), piece({named("d")})});
    EXPECT_THAT(folder.entries(), ElementsAre("a", "b", "c", "d"));
    EXPECT_FALSE(folder.error);
    EXPECT_EQ(folder.reads, 3);
    EXPECT_THAT(folder.entries(), IsEmpty()) << "the end stays the end";
    EXPECT_THAT(Staged({}).entries(), IsEmpty());
}

TEST(BulkListing, PassesOverWhatIsNotDescribedAndFoldersThatAreToBeLeftUntouched) {
    Staged folder({piece({named("server", folderType),
                          named("room", folderType),
                          named("b"),
                          {.name = "refused", .error = EACCES},
                          {.type = fileType}}),
                   piece({{.name = "refused", .error = EACCES}}), piece({named("last")})});
    const NameSet excluded = {"server", "b"};
    EXPECT_THAT(folder.entries(&excluded), ElementsAre("room", "b", "last"));
    EXPECT_FALSE(folder.error);
}

TEST(BulkListing, AsksAgainWhenASignalCameBetween) {
    Staged folder({failure(EINTR), piece({named("a")}), failure(EINTR), failure(EINTR), piece({named("b")})});
    EXPECT_THAT(folder.entries(), ElementsAre("a", "b"));
    EXPECT_FALSE(folder.error);
    Staged names({failure(EINTR), piece({named("a")}), failure(EINTR)});
    EXPECT_EQ(names.names(), std::pair(std::vector<std::string>{"a"}, 0));
}

TEST(BulkListing, AFolderWhoseNamesLiveElsewhereHoldsNothing) {
    Staged folder({failure(EDEADLK)});
    EXPECT_THAT(folder.entries(), IsEmpty());
    EXPECT_FALSE(folder.error);
    Staged names({piece({named("a")}), failure(EDEADLK)});
    EXPECT_EQ(names.names(), std::pair(std::vector<std::string>{"a"}, -1)) << "but it is not empty";
    EXPECT_EQ(errno, EDEADLK);
}

TEST(BulkListing, SaysThatItEndedEarly) {
    Staged folder({piece({named("a")}), failure(EIO), piece({named("b")})});
    EXPECT_THAT(folder.entries(), ElementsAre("a"));
    EXPECT_EQ(folder.error, std::errc::io_error);
    EXPECT_THAT(folder.entries(), IsEmpty()) << "nothing comes after an error";
    EXPECT_EQ(folder.error, std::errc::io_error);
    Staged refused({failure(EACCES)});
    EXPECT_THAT(refused.entries(), IsEmpty());
    EXPECT_EQ(refused.error, std::errc::permission_denied);
    EXPECT_EQ(Staged({failure(EACCES)}).names().second, -1);
    EXPECT_EQ(errno, EACCES);
}

TEST(BulkListing, ThatClaimsMoreRecordsThanThereAreFails) {
    for (const std::size_t broken : {0U, 1U, 2U}) {
        std::vector<Piece> pieces = {piece({named("a"), named("b")}), piece({named("c")}),
                                     piece({named("d"), named("e")})};
        ++pieces[broken].count;
        Staged folder(pieces);
        std::vector<std::string> expected = {"a", "b"};
        if (broken > 0)
            expected.emplace_back("c");
        if (broken > 1)
            expected.insert(expected.end(), {"d", "e"});
        EXPECT_EQ(folder.entries(), expected) << broken;
        EXPECT_EQ(folder.error, std::errc::io_error) << broken;
        EXPECT_THAT(folder.entries(), IsEmpty()) << broken;

        // Removal by name must not be given any names of an incomplete piece.
        Staged names(pieces);
        expected.resize(broken == 0 ? 0 : broken == 1 ? 2 : 3);
        EXPECT_EQ(names.names(), std::pair(expected, -1)) << broken;
        EXPECT_EQ(errno, EIO);
    }
}

TEST(BulkListing, FewerRecordsThanThereAreAreTakenAtTheSystemsWord) {
    Piece two = piece({named("a"), named("b"), named("old")});
    two.count = 2;
    Staged folder({two, piece({named("c")})});
    EXPECT_THAT(folder.entries(), ElementsAre("a", "b", "c"));
}

TEST(BulkListing, AnEntryWithoutANameKeepsAFolderFromLookingEmpty) {
    for (const Written& nameless : {Written{.type = fileType}, Written{.name = "", .type = fileType},
                                    Written{.name = "a/b", .type = fileType}, Written{.error = EIO}}) {
        Staged names({piece({named("a")}), piece({named("b"), nameless})});
        EXPECT_EQ(names.names(), std::pair(std::vector<std::string>{"a"}, -1));
        EXPECT_EQ(errno, EIO);
        EXPECT_FALSE(names.listing().nextName());
    }
    Staged refused({piece({{.name = "known", .error = EACCES}})});
    EXPECT_THAT(refused.names().first, ElementsAre("known")) << "a name is enough";
}

}  // namespace
}  // namespace ulvak::platform
