#include "CommandAnswers.h"

#include <gtest/gtest.h>

#include "LedgerError.h"
#include "UsageError.h"

namespace Kestry {
namespace {

LocalAnswer failureOf(const std::function<void()>& failing, bool asJson = false)
{
    return answerOrFailure(asJson, [&] {
        failing();
        return LocalAnswer{};
    });
}

TEST(CommandAnswers, AnAnswerHasTheFormThatIsAskedFor)
{
    const CommandAnswer answer{"Started.\n", "{\"ok\":true}"};
    EXPECT_EQ(shownAnswer(answer, false).output, "Started.\n");
    EXPECT_EQ(shownAnswer(answer, true).output, "{\"ok\":true}\n");
    EXPECT_EQ(shownAnswer(answer, true).status, 0);
}

TEST(CommandAnswers, AResultThatIsNotSoundHasTheStatusOfARefusal)
{
    CommandAnswer answer{"Damaged.\n", "{}"};
    answer.isSound = false;
    EXPECT_EQ(shownAnswer(answer, false).status, 1);
    EXPECT_EQ(shownAnswer(answer, false).output, "Damaged.\n");
}

TEST(CommandAnswers, AFailureIsARefusalAndUnusableWordsHaveAStatusOfTheirOwn)
{
    const LocalAnswer refusal = failureOf([] { throw KestryCore::LedgerError("No."); });
    EXPECT_EQ(refusal, (LocalAnswer{1, false, "", "No.\n"}));
    const LocalAnswer unusable = failureOf([] { throw UsageError("What?"); });
    EXPECT_EQ(unusable, (LocalAnswer{2, false, "", "What?\n"}));
}

TEST(CommandAnswers, AFailureIsToldInJsonTooWhereThatIsAskedFor)
{
    const LocalAnswer answer = failureOf([] { throw KestryCore::LedgerError("No\x1B."); }, true);
    EXPECT_EQ(answer.errors, "No\\x1B.\n");
    EXPECT_EQ(answer.output, "{\"error\":\"No\\u001b.\"}\n");
}

} // namespace
} // namespace Kestry
