#include "ai/server/model_reply.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ai/linux/scripted_server.h"

namespace ulvak::platform {
namespace {

using Json = nlohmann::ordered_json;
using State = ModelList::State;

TEST(ModelReply, ListHoldsTheNamesInTheServersOrder) {
    const ModelList list = readModelList(
        200,
        R"({"object":"list","data":[{"id":"b","object":"model"},{"id":"a"},{"id":7},{},"x",{"id":""}]})");
    EXPECT_EQ(list.state, State::listed);
    EXPECT_EQ(list.names, (std::vector<std::string>{"b", "a"}));
}

TEST(ModelReply, ServerWithoutModelsListsNone) {
    for (const char* body : {R"({"data":[]})", R"({"object":"list","data":null})"}) {
        EXPECT_EQ(readModelList(200, body).state, State::listed) << body;
        EXPECT_TRUE(readModelList(200, body).names.empty()) << body;
    }
}

TEST(ModelReply, WhateverElseAnswersIsNoList) {
    for (const char* body : {"", "<html>", "{}", "[]", "null", R"({"data":{}})", R"({"data":"x"})"})
        EXPECT_EQ(readModelList(200, body).state, State::notAList) << body;
    for (const long status : {204L, 302L, 401L, 404L, 500L})
        EXPECT_EQ(readModelList(status, R"({"data":[{"id":"a"}]})").state, State::notAList) << status;
}

TEST(ModelReply, LoadingIsToldByTheStatusOrTheMessage) {
    const char* llama = R"({"error":{"code":503,"message":"Loading model","type":"unavailable_error"}})";
    EXPECT_EQ(readModelList(503, llama).state, State::loading);
    EXPECT_EQ(readModelList(500, R"({"error":"Loading model, please wait"})").state, State::loading);
    EXPECT_TRUE(isLoading(503, R"({"error":"later"})"));
    EXPECT_TRUE(isLoading(500, R"({"error":{"type":"Unavailable_Error","message":"wait"}})"));
    EXPECT_FALSE(isLoading(200, R"({"status":"ok"})"));
    EXPECT_FALSE(isLoading(500, R"({"error":"no such model"})"));
    EXPECT_FALSE(isLoading(500, R"({"error":"error loading model x"})"));
    EXPECT_FALSE(isLoading(500, R"({"error":{"type":"unavailable","message":"failed loading model"}})"));
}

TEST(ModelReply, UnavailableWithoutAnErrorInJsonIsNotLoading) {
    for (const char* body : {"", "<html>", "Service Unavailable", "{}", "[]", "503", R"({"error":null})",
                             R"([{"error":"loading model"}])", R"({"status":"loading model"})"}) {
        EXPECT_FALSE(isLoading(503, body)) << body;
        EXPECT_EQ(readModelList(503, body).state, State::notAList) << body;
    }
}

TEST(ModelReply, CloudModelsAreKnownByTheirNames) {
    for (const char* name : {"gpt-oss:120b-cloud", "glm-4.6:cloud", "X-CLOUD", "x:Cloud", "x:cloud \t",
                             "x:cloud@sha256:0123", "x-cloud @a@b"})
        EXPECT_TRUE(isCloudModel(name)) << name;
    for (const char* name : {"cloud", "cloudy:7b", "llama3.2:3b", "a-cloud:7b", "a@b:cloud", "@", "", " "})
        EXPECT_FALSE(isCloudModel(name)) << name;
}

TEST(ModelReply, ModelsThatRunElsewhereAreShownWithTheirPlace) {
    for (const char* body : {R"({"remote_host":"https://example.com:443"})", R"({"remote_model":"m:120b"})",
                             R"({"license":"","remote_model":"m","remote_host":""})"})
        EXPECT_EQ(readShow(200, body), ModelPlace::elsewhere) << body;
    for (const char* body : {R"({"modelfile":"FROM x"})", R"({"remote_host":"","remote_model":null})", "{}",
                             R"({"details":{"remote_host":"x"}})"})
        EXPECT_EQ(readShow(200, body), ModelPlace::here) << body;
    for (const char* body : {R"(["remote_host"])", R"({"remote_host":true})", R"({"remote_model":{}})",
                             "not found", "", "null", R"({"error":"x","modelfile":"FROM x"})"})
        EXPECT_EQ(readShow(200, body), ModelPlace::unclear) << body;
    EXPECT_EQ(Json::parse(showBody("a\"\n\xff")), Json({{"model", "a\"\n\uFFFD"}}));
}

TEST(ModelReply, ServersThatDoNotKnowWhereModelsRunSaySo) {
    for (const long status : {404L, 405L, 501L})
        EXPECT_EQ(readShow(status, R"({"remote_host":"x"})"), ModelPlace::notAsked) << status;
    for (const char* body :
         {"", R"({"detail":"Not Found"})", R"({"error":{"code":404,"message":"File Not Found"}})"})
        EXPECT_EQ(readShow(404, body), ModelPlace::notAsked) << body;
    EXPECT_EQ(readShow(404, R"({"error":"model 'x' not found"})"), ModelPlace::unclear)
        << "it knows the question";
    EXPECT_EQ(readShow(200, R"_({"error":"Unexpected endpoint or method. (POST /api/show)"})_"),
              ModelPlace::notAsked);
    for (const long status : {0L, 201L, 204L, 302L, 400L, 401L, 403L, 408L, 429L, 500L, 502L, 503L})
        EXPECT_EQ(readShow(status, R"({"modelfile":"FROM x"})"), ModelPlace::unclear) << status;
}

TEST(ModelReply, RequestBeginsWithInstructionsAndPromptUnchanged) {
    const ModelRequest request{.instructions = "Talimat \"x\".",
                               .prompt = "Folder facts:\nPath: ~/ş",
                               .answerName = "AIVerdict",
                               .answerSchema = R"({"type":"object","properties":{"z":{},"a":{}}})",
                               .temperature = 0.2};
    const Json body = Json::parse(chatBody(request, "model-x"));
    EXPECT_EQ(body["model"], "model-x");
    EXPECT_EQ(body["temperature"], 0.2);
    EXPECT_EQ(body["stream"], false);
    EXPECT_FALSE(body.contains("max_tokens"));
    EXPECT_FALSE(body.contains("top_p"));
    ASSERT_EQ(body["messages"].size(), 2U);
    EXPECT_EQ(body["messages"][0]["role"], "system");
    const std::string system = body["messages"][0]["content"];
    EXPECT_TRUE(system.starts_with("Talimat \"x\".\n\n"));
    EXPECT_TRUE(system.ends_with(request.answerSchema));
    EXPECT_EQ(body["messages"][1]["role"], "user");
    EXPECT_EQ(body["messages"][1]["content"], request.prompt);
    EXPECT_EQ(body["response_format"]["type"], "json_schema");
    EXPECT_EQ(body["response_format"]["json_schema"]["name"], "AIVerdict");
    EXPECT_EQ(body["response_format"]["json_schema"]["strict"], true);
    EXPECT_EQ(body["response_format"]["json_schema"]["schema"].dump(), request.answerSchema);
}

TEST(ModelReply, RequestIsValidTextWhateverItHolds) {
    const ModelRequest request{.prompt = "\xff\xfe", .answerSchema = "{}"};
    EXPECT_EQ(Json::parse(chatBody(request, "m\xff"))["messages"][1]["content"], "\uFFFD\uFFFD");
}

TEST(ModelReply, ClippedTextIsWholeCharactersOnOneLine) {
    EXPECT_EQ(clipped("  a\n\n b\t\r\nc ", 100), "a b c");
    EXPECT_EQ(clipped("abc", 3), "abc");
    EXPECT_EQ(clipped("abcd", 3), "…");
    EXPECT_EQ(clipped("abcdef", 5), "ab…");
    EXPECT_EQ(clipped("aşş", 5), "aşş");
    EXPECT_EQ(clipped("aşşş", 6), "aş…");
    EXPECT_EQ(clipped("", 4), "");
    EXPECT_EQ(clipped(std::string(1'000'000, ' '), 4), "");
    EXPECT_EQ(clipped("\x80\x80\x80\x80\x80\x80", 4), "…");
}

/// As many distinct keys as fit into a reply of the maximum length.
std::string keys(const std::string& value) {
    std::string all;
    for (int i = 0; i < 60'000 && all.size() < 500'000; ++i)
        all += (i == 0 ? "\"" : ",\"") + std::to_string(i) + "\":" + value;
    return all;
}

TEST(ModelReply, RepliesWithManyKeysAreReadToTheirEnd) {
    // In a list with linear lookup they would take minutes.
    const std::string many = keys("0");
    const std::string message = R"({"content":"x",)" + many + "}";
    EXPECT_EQ(readAnswer(200, R"({"choices":[{"message":)" + message + "}]}", "s").value_or("error"), "x");
    EXPECT_EQ(
        readAnswer(200, "{" + many + R"(,"choices":[{"message":{"content":"x"}}]})", "s").value_or("error"),
        "x");
    EXPECT_EQ(readAnswer(500, "{" + many + R"(,"error":"words"})", "s").error().text,
              "Model sunucusu (s) isteği geri çevirdi (HTTP 500): words");
    EXPECT_EQ(readModelList(200, "{" + many + R"(,"data":[{"id":"a"}]})").names,
              std::vector<std::string>{"a"});
    EXPECT_EQ(readShow(200, "{" + many + R"(,"remote_host":"x"})"), ModelPlace::elsewhere);
}

TEST(ModelReply, DeeplyNestedRepliesDoNotExhaustTheStack) {
    const std::string open(100'000, '[');
    for (const std::string& body : {open, open + std::string(100'000, ']'), "{\"choices\":" + open,
                                    "{\"error\":" + open + std::string(100'000, ']') + "}"}) {
        EXPECT_FALSE(readAnswer(200, body, "s"));
        EXPECT_EQ(readModelList(200, body).state, State::notAList);
    }
}

}  // namespace
}  // namespace ulvak::platform
