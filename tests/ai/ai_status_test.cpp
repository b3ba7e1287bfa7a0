#include "ai/ai_status.h"

#include <gtest/gtest.h>

#include "ai/fake_model.h"

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
    struct Row {
        ModelAbsenceReason reason;
        const char* sentence;
    };
    constexpr Row rows[] = {
        {ModelAbsenceReason::deviceNotEligible, "Bu Mac Apple Intelligence'ı desteklemiyor."},
        {ModelAbsenceReason::notEnabled,
         "Apple Intelligence kapalı. Sistem Ayarları > Apple Intelligence ve Siri'den açabilirsin."},
        {ModelAbsenceReason::notReady,
         "Apple Intelligence modeli henüz hazır değil (indiriliyor olabilir). Biraz sonra tekrar dene."},
        {ModelAbsenceReason::other, "Apple Intelligence şu an kullanılamıyor."},
    };
    for (const auto& [reason, sentence] : rows) {
        const AIStatus status = AIStatus::current(FakeModel(ModelAbsence{.reason = reason, .detail = "x"}));
        EXPECT_FALSE(status.isAvailable());
        EXPECT_EQ(status.unavailable, sentence);
        EXPECT_EQ(status.plainText(), std::string("unavailable(\"") + sentence + "\")");
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
