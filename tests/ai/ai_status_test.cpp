#include "ai/ai_status.h"

#include <gtest/gtest.h>

#include "ai/fake_model.h"
#include "core/words.h"

namespace ulvak {
namespace {

using platform::ModelAbsence;
using platform::ModelAbsenceReason;
using test::FakeModel;

TEST(AIStatus, IsAvailableWhenTheModelIs) {
    const AIStatus status = AIStatus::current(FakeModel(std::vector<FakeModel::Answer>{}));
    EXPECT_TRUE(status.isAvailable());
    EXPECT_EQ(status.plainText(), "available");
}

TEST(AIStatus, EachReasonHasItsSentence) {
    constexpr ModelAbsenceReason reasons[] = {ModelAbsenceReason::deviceNotEligible,
                                              ModelAbsenceReason::notEnabled, ModelAbsenceReason::notReady,
                                              ModelAbsenceReason::other};
    const auto& sentences = words().modelAbsence;
    ASSERT_EQ(std::size(reasons), sentences.size());
    for (std::size_t i = 0; i < sentences.size(); ++i) {
        const ModelAbsenceReason reason = reasons[i];
        const std::string sentence(sentences[i]);
        const AIStatus status = AIStatus::current(FakeModel(ModelAbsence{.reason = reason, .detail = "x"}));
        EXPECT_FALSE(status.isAvailable());
        EXPECT_EQ(status.unavailable, sentence);
        EXPECT_EQ(status.plainText(), "unavailable(\"" + sentence + "\")");
    }
}

TEST(AIStatus, EqualWhenTheSentencesAreEqualWhateverTheHint) {
    const AIStatus one{.unavailable = "a", .hint = "x"};
    EXPECT_EQ(one, (AIStatus{.unavailable = "a", .hint = "y"}));
    EXPECT_NE(one, (AIStatus{.unavailable = "b", .hint = "x"}));
    EXPECT_NE(one, AIStatus{});
    EXPECT_EQ(AIStatus{}, AIStatus{});
}

TEST(AIStatus, HintIsFitForATerminal) {
    const FakeModel model(ModelAbsence{.detail = "a\x1b[2J\nb"});
    EXPECT_EQ(AIStatus::current(model).hint, "a\uFFFD[2J\uFFFDb");
}

}  // namespace
}  // namespace ulvak
