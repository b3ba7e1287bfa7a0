#include "platform/macos/answer_schema.h"

#include <gtest/gtest.h>

#include <string>

namespace ulvak::platform {
namespace {

std::string object(const std::string& properties, const std::string& required) {
    return R"({"type":"object","properties":{)" + properties + R"(},"required":[)" + required +
           R"(],"additionalProperties":false})";
}

TEST(AnswerSchema, HasItsPropertiesInOrder) {
    const auto found =
        answerProperties(object(R"("z":{"description":"Ne olduğu","type":"string","enum":["safe","keep"]},)"
                                R"("a":{"type":"string"},"m":{"type":"integer","minimum":-5,"maximum":100})",
                                R"("z","a","m")"));
    ASSERT_TRUE(found);
    const std::vector<AnswerProperty> expected = {
        {.name = "z",
         .description = "Ne olduğu",
         .kind = AnswerProperty::Kind::choice,
         .choices = {"safe", "keep"}},
        {.name = "a"},
        {.name = "m", .kind = AnswerProperty::Kind::integer, .least = -5, .most = 100},
    };
    EXPECT_EQ(*found, expected);
}

TEST(AnswerSchema, ThatTheModelCouldNotBeHeldToIsNone) {
    const std::string a = R"("a":{"type":"string"})";
    for (const std::string& schema : {
             std::string(""),
             std::string("{"),
             std::string("[]"),
             std::string("{}"),
             std::string(R"({"type":"object"})"),
             std::string(R"({"type":"string"})"),
             std::string(R"({"type":1,"properties":{}})"),
             object("", ""),
             object(a, ""),
             object(a, R"("b")"),
             object(R"("a":1)", R"("a")"),
             object(R"("a":{})", R"("a")"),
             object(R"("a":{"type":"number"})", R"("a")"),
             object(R"("a":{"type":"object","properties":{}})", R"("a")"),
             object(R"("a":{"type":"string","pattern":"x"})", R"("a")"),
             object(R"("a":{"type":"string","minimum":1})", R"("a")"),
             object(R"("a":{"type":"string","enum":[]})", R"("a")"),
             object(R"("a":{"type":"string","enum":["x",1]})", R"("a")"),
             object(R"("a":{"type":"integer"})", R"("a")"),
             object(R"("a":{"type":"integer","minimum":1})", R"("a")"),
             object(R"("a":{"type":"integer","minimum":2,"maximum":1})", R"("a")"),
             object(R"("a":{"type":"integer","minimum":0,"maximum":1.5})", R"("a")"),
             object(R"("a":{"type":"integer","minimum":-5,"maximum":18446744073709551615})", R"("a")"),
             object(R"("a":{"type":"integer","minimum":9223372036854775808,"maximum":9223372036854775809})",
                    R"("a")"),
             std::string(R"({"type":"object","properties":{)" + a + R"(},"required":"a"})"),
             object(R"("a":{"type":"integer","enum":["x"],"minimum":0,"maximum":1})", R"("a")"),
         })
        EXPECT_FALSE(answerProperties(schema)) << schema;
}

}  // namespace
}  // namespace ulvak::platform
