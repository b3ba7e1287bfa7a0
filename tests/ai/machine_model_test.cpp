#include "ai/machine_model.h"

#include <gtest/gtest.h>

#include <stop_token>

namespace ulvak {
namespace {

TEST(MachineModel, AStoppedRequestIsAnError) {
    std::stop_source stop;
    stop.request_stop();
    const platform::ModelRequest request{
        .instructions = "Answer.",
        .prompt = "Yes?",
        .answerName = "answer",
        .answerSchema = R"({"type":"object","properties":{"yes":{"type":"string"}},"required":["yes"]})"};
    EXPECT_FALSE(machineModel().respond(request, stop.get_token()));
}

}  // namespace
}  // namespace ulvak
