#include "survey/simulators.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace ulvak {
namespace {

using namespace std::chrono_literals;

/// One runtime with these devices.
std::string listOf(const std::string& devices,
                   const std::string& runtime = "com.apple.CoreSimulator.SimRuntime.iOS-17-2") {
    return R"({"devices":{")" + runtime + R"(":[)" + devices + "]}}";
}

TEST(Simulators, ReadsADevice) {
    const auto all = Simulators::parse(listOf(
        R"({"udid":"A-1","name":"iPhone 15","isAvailable":true,"lastBootedAt":"2024-01-02T03:04:05Z","state":"Shutdown"})"));
    ASSERT_EQ(all.size(), 1U);
    const SimulatorInfo expected{
        .udid = "A-1",
        .name = "iPhone 15",
        .runtime = "iOS 17.2",
        .isAvailable = true,
        .lastBooted = FileTime(std::chrono::sys_days(2024y / 1 / 2) + 3h + 4min + 5s)};
    EXPECT_EQ(all.at("A-1"), expected);
}

TEST(Simulators, DeviceWithoutUdidIsSkippedAlone) {
    const auto all = Simulators::parse(listOf(R"({"name":"x"},{"udid":7},{"udid":"B"})"));
    ASSERT_EQ(all.size(), 1U);
    EXPECT_TRUE(all.contains("B"));
}

TEST(Simulators, DeviceWithoutANameIsListedUnderItsUdidAndUnavailable) {
    for (const char* device :
         {R"({"udid":"B"})", R"({"udid":"B","name":3,"isAvailable":"yes","lastBootedAt":1})"}) {
        const auto all = Simulators::parse(listOf(device));
        EXPECT_EQ(all.at("B").name, "B");
        EXPECT_FALSE(all.at("B").isAvailable);
        EXPECT_FALSE(all.at("B").lastBooted.has_value());
    }
}

TEST(Simulators, LaterDeviceWithTheSameUdidReplacesTheEarlier) {
    const auto all = Simulators::parse(listOf(R"({"udid":"B","name":"first"},{"udid":"B","name":"second"})"));
    EXPECT_EQ(all.at("B").name, "second");
}

TEST(Simulators, RuntimeIsReadable) {
    EXPECT_EQ(Simulators::readableRuntime("com.apple.CoreSimulator.SimRuntime.iOS-17-2"), "iOS 17.2");
    EXPECT_EQ(Simulators::readableRuntime("com.apple.CoreSimulator.SimRuntime.watchOS-10-0"), "watchOS 10.0");
    EXPECT_EQ(Simulators::readableRuntime("iOS-17--2-1-"), "iOS 17.2.1");
    EXPECT_EQ(Simulators::readableRuntime("a.visionOS"), "visionOS ") << "the blank before the version stays";
    EXPECT_EQ(Simulators::readableRuntime("a."), "");
    EXPECT_EQ(Simulators::readableRuntime("a.--"), "--");
    EXPECT_EQ(Simulators::readableRuntime(""), "");
}

TEST(Simulators, DateHasAZoneAndNoFractions) {
    const FileTime expected = std::chrono::sys_days(2024y / 1 / 2) + 3h + 4min + 5s;
    EXPECT_EQ(Simulators::parseIso8601("2024-01-02T03:04:05Z"), expected);
    EXPECT_EQ(Simulators::parseIso8601("2024-01-02T06:04:05+03:00"), expected);
    EXPECT_EQ(Simulators::parseIso8601("2024-01-01T21:34:05-05:30"), expected);
    EXPECT_EQ(Simulators::parseIso8601("2024-02-29T00:00:00Z"), std::chrono::sys_days(2024y / 2 / 29));
    for (const char* text :
         {"2024-01-02T03:04:05.123Z", "2024-01-02T03:04:05", "2024-01-02", "", "2023-02-29T00:00:00Z",
          "2024-13-01T00:00:00Z", "2024-00-01T00:00:00Z", "2024-01-32T00:00:00Z", "2024-01-02T24:00:00Z",
          "2024-01-02T23:60:00Z", "2024-01-02T23:00:60Z", "2024-01-02 03:04:05Z", "2024-01-02T03:04:05Zx",
          "2024-01-02T03:04:05+0300", "2024-01-02T03:04:05+24:00", "-024-01-02T03:04:05Z",
          "2024-01-02T03:04:05z", "2024-01-02T03:04:+5Z", "yyyy-mm-ddThh:mm:ssZ"})
        EXPECT_FALSE(Simulators::parseIso8601(text).has_value()) << text;
}

TEST(Simulators, AnythingElseIsNoList) {
    const std::string deep(1'000'000, '[');
    const std::string deepObjects = [] {
        std::string text;
        for (int i = 0; i < 200'000; ++i)
            text += R"({"devices":)";
        return text;
    }();
    for (const std::string& text :
         {std::string(), std::string("null"), std::string("[]"), std::string("{}"), std::string("7"),
          std::string(R"({"device":{}})"), std::string(R"({"devices":[]})"),
          std::string(R"({"devices":null})"), std::string(R"({"devices":{"a":{}}})"),
          std::string(R"({"devices":{"a":[1]}})"), std::string(R"({"devices":{"a":[{"udid":"A"}],"b":"x"}})"),
          std::string(R"({"devices":{"a":[{"udid":"A"})"),
          std::string("{\"devices\":{\"a\":[{\"udid\":\"\xff\"}]}}"), std::string("simctl: error\n"), deep,
          deepObjects, std::string("\0", 1)})
        EXPECT_TRUE(Simulators::parse(text).empty()) << text.substr(0, 60);
}

TEST(Simulators, NestingThatNoListHasIsRefusedBeforeItCosts) {
    const std::string deep = R"({"devices":)" + std::string(8'000'000, '[');
    EXPECT_TRUE(Simulators::parse(deep).empty());
    EXPECT_EQ(Simulators::parse(listOf(R"({"udid":"A","name":"[[[[{{{{\"[[[["})")).at("A").name,
              R"([[[[{{{{"[[[[)")
        << "brackets in strings do not nest";
    std::string longList = listOf(R"({"udid":"A"})");
    longList.resize(Simulators::maxListBytes + 1, ' ');
    EXPECT_TRUE(Simulators::parse(longList).empty());
}

TEST(Simulators, HugeListIsReadInFull) {
    std::string runtimes;
    for (int i = 0; i < 50'000; ++i) {
        runtimes += (i > 0 ? "," : "") + std::string("\"r.iOS-") + std::to_string(i) + "\":[{\"udid\":\"U" +
                    std::to_string(i) + "\"}]";
    }
    EXPECT_EQ(Simulators::parse(R"({"devices":{)" + runtimes + "}}").size(), 50'000U);
}

}  // namespace
}  // namespace ulvak
