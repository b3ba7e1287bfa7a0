#include "store/verdict_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

#include "core/json_integer.h"
#include "core/text.h"
#include "core/verdict_json.h"

namespace ulvak {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view replacement = "\uFFFD";
constexpr std::string_view hexDigits = "0123456789abcdef";

std::string hexadecimal(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += hexDigits[byte / 16];
        text += hexDigits[byte % 16];
    }
    return text;
}

std::optional<std::string> fromHexadecimal(std::string_view text) {
    if (text.size() % 2 != 0 || text.find_first_not_of(hexDigits) != std::string_view::npos)
        return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes += static_cast<char>(hexDigits.find(text[i]) * 16 + hexDigits.find(text[i + 1]));
    return bytes;
}

/// The id of the entry with this name. Bytes that do not match the name were copied from another entry and
/// are ignored.
std::string idOf(std::string name, const Json& idBytes) {
    if (!idBytes.is_string())
        return name;
    auto bytes = fromHexadecimal(idBytes.get_ref<const std::string&>());
    if (!bytes)
        return name;
    const std::string shown = wellFormed(*bytes);
    return shown != *bytes && name.starts_with(shown) ? std::move(*bytes) : name;
}

/// Builds entries from the parser's events. Keeps only known members, so that anything else in the file costs
/// nothing, and no nesting state, so that no depth overflows the stack.
class EntryReader : public nlohmann::json_sax<Json> {
public:
    [[nodiscard]] VerdictEntries& entries() { return entries_; }
    [[nodiscard]] const std::string& error() const { return error_; }

    bool null() override { return value(nullptr); }
    bool boolean(bool truth) override { return value(truth); }
    bool number_integer(number_integer_t number) override { return value(number); }
    bool number_unsigned(number_unsigned_t number) override { return value(number); }
    bool number_float(number_float_t number, const string_t& /*text*/) override { return value(number); }
    bool string(string_t& text) override { return value(std::move(text)); }
    bool binary(binary_t& /*bytes*/) override { return false; }  // not in JSON
    bool start_object(std::size_t /*count*/) override { return open(Json::object()); }
    bool start_array(std::size_t /*count*/) override { return open(Json::array()); }
    bool end_array() override { return close(); }
    bool end_object() override { return close(); }

    bool key(string_t& name) override {
        if (depth_ == entriesDepth)
            name_ = std::move(name);
        else if (depth_ == entryDepth)
            member_ = fields_.find(name);
        else if (depth_ == verdictDepth && isInVerdict_)
            verdictMember_ = std::ranges::find(verdictKeys, name);
        return true;
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        return fail(error.what());
    }

private:
    /// How many brackets are open among the members of...
    static constexpr int entriesDepth = 1;
    static constexpr int entryDepth = 2;
    static constexpr int verdictDepth = 3;
    static constexpr std::array<std::string_view, 5> verdictKeys = {"level", "title", "explanation", "source",
                                                                    "confidence"};

    bool fail(std::string why) {
        error_ = std::move(why);
        return false;
    }

    bool value(Json json) {
        if (depth_ < entryDepth)
            return fail(depth_ < entriesDepth ? "the file is not an object" : "an entry is not an object");
        put(std::move(json));
        return true;
    }

    /// A value in an entry or its verdict, if the member is known.
    void put(Json json) {
        if (depth_ == entryDepth && member_ != fields_.end())
            member_->second = std::move(json);
        else if (depth_ == verdictDepth && isInVerdict_ && verdictMember_ != verdictKeys.end())
            fields_["verdict"][std::string(*verdictMember_)] = std::move(json);
    }

    bool open(Json empty) {
        if (depth_ < entryDepth && !empty.is_object())
            return value(nullptr);
        if (depth_ >= maxVerdictNesting)
            return fail("nested too deep");
        if (depth_ == entriesDepth)
            std::ranges::for_each(fields_, [](auto& field) { field.second = nullptr; });
        if (depth_ == entryDepth)
            isInVerdict_ = empty.is_object() && member_ != fields_.end() && member_->first == "verdict";
        put(std::move(
            empty));  // stays empty unless it is the verdict: anywhere else, brackets are a wrong type
        ++depth_;
        return true;
    }

    bool close() {
        --depth_;
        return depth_ != entriesDepth || takeEntry();
    }

    bool takeEntry() {
        auto verdict = verdictFromJson(fields_["verdict"]);
        if (!verdict)
            return fail(std::move(verdict.error().what));
        const auto size = jsonInteger(fields_["size"]);
        if (!size)
            return fail("size is missing or not an integer");
        const Json& date = fields_["date"];
        if (!date.is_number())
            return fail("date is missing or not a number");
        entries_.insert_or_assign(
            idOf(std::move(name_), fields_["idBytes"]),
            VerdictEntry{.verdict = std::move(*verdict), .size = *size, .date = {date.get<double>()}});
        return true;
    }

    VerdictEntries entries_;
    std::string error_;
    int depth_ = 0;
    std::string name_;  ///< of the entry
    std::map<std::string, Json, std::less<>> fields_ = {
        {"verdict", nullptr}, {"size", nullptr}, {"date", nullptr}, {"idBytes", nullptr}};
    decltype(fields_)::iterator member_ = fields_.end();
    bool isInVerdict_ = false;
    decltype(verdictKeys)::const_iterator verdictMember_ = verdictKeys.end();
};

/// Member names for ids that JSON cannot represent; none of them is another entry's id.
std::map<std::string_view, std::string> namesInPlaceOf(const std::vector<std::string_view>& ids,
                                                       const VerdictEntries& entries) {
    std::map<std::string_view, std::string> names;
    std::set<std::string, std::less<>> taken;
    std::map<std::string, int> nextNumber;
    for (const std::string_view id : ids) {
        const std::string shown = wellFormed(id);
        std::string name = shown;
        while (taken.contains(name) || entries.contains(name))
            name = shown + std::string(replacement) + std::to_string(++nextNumber[shown]);
        taken.insert(name);
        names.emplace(id, std::move(name));
    }
    return names;
}

void appendEntry(std::string& text, const std::string& name, const VerdictEntry& entry,
                 std::optional<std::string_view> idBytes) {
    Json json = {
        {"verdict", toJson(entry.verdict)}, {"size", entry.size}, {"date", entry.date.secondsSince2001}};
    if (idBytes)
        json["idBytes"] = hexadecimal(*idBytes);
    text += text.size() > 1 ? "," : "";
    text += Json(name).dump();
    text += ':';
    text += json.dump();
}

}  // namespace

StoredDate StoredDate::from(FileTime time) {
    using std::chrono::January;
    constexpr FileTime epoch = std::chrono::sys_days{std::chrono::year{2001} / January / 1};
    return {std::chrono::duration<double>(time - epoch).count()};
}

std::expected<VerdictEntries, DataCorrupted> decodeEntries(std::string_view text) {
    // The parser treats a NUL byte as the end of the text.
    if (text.size() > maxVerdictFileBytes || text.contains('\0'))
        return std::unexpected(DataCorrupted{"too long, or not text"});
    EntryReader reader;
    if (!Json::sax_parse(text, &reader))
        return std::unexpected(DataCorrupted{reader.error()});
    return std::move(reader.entries());
}

std::optional<std::string> encodeEntries(const VerdictEntries& entries) {
    std::vector<std::string_view> notUtf8;
    for (const auto& [id, entry] : entries) {
        if (!std::isfinite(entry.date.secondsSince2001))
            return std::nullopt;
        if (wellFormed(id) != id)
            notUtf8.push_back(id);
    }
    const auto names = namesInPlaceOf(notUtf8, entries);
    std::string text = "{";
    for (const auto& [id, entry] : entries) {
        const auto name = names.find(id);
        if (name == names.end())
            appendEntry(text, id, entry, std::nullopt);
        else
            appendEntry(text, name->second, entry, id);
    }
    text += '}';
    return text.size() <= maxVerdictFileBytes ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace ulvak
