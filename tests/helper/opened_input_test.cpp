// Inputs that are opened once for many questions.
#include "TavioIpadSDK/helper/opened_input.h"

#include <chrono>
#include <csignal>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/helper/sealed_file.h"
#include "helper/helper_fixture.h"

namespace tavio::test {
namespace {

class OpenedInput : public HelperTest {
  protected:
    static helper::OpenedInput opened(const std::string& input, const Limits& limits = {}) {
        return {oddHelper(), limits, helper::sealedFile(bytesOf(input))};
    }
};

std::string answerTo(helper::OpenedInput& input, const std::vector<std::string>& words) {
    return textOf(input.ask(words));
}

TEST_F(OpenedInput, AnswersAsOneThatIsOpenedForEachQuestion) {
    helper::OpenedInput input = opened("content");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(answerTo(input, {"echo"}), "content");
}

TEST_F(OpenedInput, IsOpenedOnceFromTheSecondQuestionOn) {
    helper::OpenedInput input = opened("content");
    answerTo(input, {"echo"});
    std::set<pid_t> parents;
    std::set<pid_t> children;
    for (int i = 0; i < 5; ++i) {
        const Processes processes = processesIn(answerTo(input, {"parent"}));
        parents.insert(processes.parent);
        children.insert(processes.own);
    }
    EXPECT_EQ(parents.size(), 1U);
    EXPECT_EQ(children.size(), 5U);
    EXPECT_NE(*parents.begin(), keeperProcess());
}

TEST_F(OpenedInput, EndsWithItsObject) {
    pid_t process = 0;
    {
        helper::OpenedInput input = opened("content");
        answerTo(input, {"echo"});
        process = processesIn(answerTo(input, {"parent"})).parent;
        EXPECT_FALSE(isDead(process));
    }
    EXPECT_TRUE(diesSoon(process));
}

TEST_F(OpenedInput, IsNotNeededByAnswersThatAreUnderWay) {
    Asked late;
    {
        helper::OpenedInput input = opened("content");
        answerTo(input, {"echo"});
        late = input.ask({"late", "50"});
    }
    EXPECT_EQ(textOf(std::move(late)), "content");
}

TEST_F(OpenedInput, SurvivesQuestionsThatGoWrong) {
    helper::OpenedInput input =
        opened("content", {.cpu = std::chrono::seconds(1), .memoryBytes = std::uint64_t{1} << 28});
    EXPECT_EQ(answerTo(input, {"echo"}), "content");
    const pid_t process = processesIn(answerTo(input, {"parent"})).parent;
    EXPECT_EQ(answerTo(input, {"crash"}), "failed");
    EXPECT_EQ(answerTo(input, {"eat"}), std::string(kAnswerBytes, 'M'));
    EXPECT_EQ(answerTo(input, {"spin"}), "CPU limit");
    EXPECT_EQ(answerTo(input, {"exit", "1"}), "failed");
    EXPECT_EQ(answerTo(input, {"echo"}), "content");
    EXPECT_EQ(processesIn(answerTo(input, {"parent"})).parent, process);
}

TEST_F(OpenedInput, ThatCannotBeOpenedFailsEachQuestion) {
    const Limits limits{.cpu = std::chrono::seconds(1), .memoryBytes = std::uint64_t{1} << 28};
    for (const auto& [content, ending] :
         {std::pair{"crash", "failed"}, {"spin", "CPU limit"}, {"eat", "memory limit"}}) {
        SCOPED_TRACE(content);
        helper::OpenedInput input = opened(content, limits);
        EXPECT_EQ(answerTo(input, {"echo"}), content) << "the first is asked as any other";
        EXPECT_EQ(answerTo(input, {"echo"}), ending);
        EXPECT_EQ(answerTo(input, {"echo"}), ending);
    }
    EXPECT_EQ(test::answerTo({"echo"}, {}, "good"), "good");
}

TEST_F(OpenedInput, IsOpenedAnewAfterItsProcessWasKilled) {
    helper::OpenedInput input = opened("content");
    answerTo(input, {"echo"});
    for (int i = 0; i < 3; ++i) {
        const pid_t process = processesIn(answerTo(input, {"parent"})).parent;
        ASSERT_EQ(::kill(process, SIGKILL), 0);
        ASSERT_TRUE(diesSoon(process));
        EXPECT_EQ(answerTo(input, {"echo"}), "content");
    }
}

TEST_F(OpenedInput, IsOpenedAnewAfterTheKeeperWasKilled) {
    helper::OpenedInput input = opened("content");
    answerTo(input, {"echo"});
    answerTo(input, {"echo"});
    const pid_t keeper = keeperProcess();
    ASSERT_EQ(::kill(keeper, SIGKILL), 0);
    ASSERT_TRUE(diesSoon(keeper));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(answerTo(input, {"echo"}), "content");
    EXPECT_NE(keeperProcess(), keeper);
}

TEST_F(OpenedInput, ServesSeveralThreadsAtOnce) {
    helper::OpenedInput input = opened("content");
    std::vector<std::thread> threads;
    std::vector<int> good(4);
    for (int& mine : good) {
        threads.emplace_back([&input, &mine] {
            for (int i = 0; i < 20; ++i) mine += answerTo(input, {"echo"}) == "content" ? 1 : 0;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, std::vector<int>(4, 20));
}

}  // namespace
}  // namespace tavio::test
