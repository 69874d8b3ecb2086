// Programs that are kept: each question is answered by a child of the keeper.
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "helper/helper_fixture.h"

namespace tavio::test {
namespace {

class Keeper : public HelperTest {};

// Pages of memory that are in use.
long residentPages(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/statm");
    long size = 0;
    long resident = 0;
    file >> size >> resident;
    return resident;
}

// What `work` returns in a fork of this process.
template <typename Work>
std::string inFork(Work work) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string text = work();
        const bool isWritten =
            ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
        ::_exit(isWritten ? 0 : 1);
    }
    ::close(ends[1]);
    std::string text(200, '\0');
    const ssize_t count = ::read(ends[0], text.data(), text.size());
    ::close(ends[0]);
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}

TEST_F(Keeper, AnswersEachQuestionByAnotherChild) {
    const Processes first = processesIn(answerTo({"parent"}));
    const Processes second = processesIn(answerTo({"parent"}));
    EXPECT_EQ(first.parent, second.parent);
    EXPECT_NE(first.own, second.own);
    EXPECT_NE(first.parent, ::getpid());
}

TEST_F(Keeper, IsNoChildOfTheApplication) {
    keeperProcess();
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(Keeper, IsNotUsedForAProgramThatIsGivenByItsPath) {
    for (int i = 0; i < 3; ++i) {
        const std::string answer =
            textOf(helper::ask(loneOddHelper(), {{"parent"}, {}}, bytesOf("")));
        EXPECT_EQ(processesIn(answer).parent, ::getpid());
    }
}

TEST_F(Keeper, GivesTheSameEndingsAsAProgramOfItsOwn) {
    const Limits limits{.cpu = std::chrono::seconds(1), .memoryBytes = std::uint64_t{1} << 28};
    const std::vector<std::pair<std::vector<std::string>, std::string>> endings = {
        {{"crash"}, "failed"},         {{"exit", "0"}, "failed"},
        {{"exit", "1"}, "failed"},     {{"exit", "127"}, "missing"},
        {{"nonsense", "x"}, "failed"}, {{"eat"}, std::string(kAnswerBytes, 'M')},
        {{"spin"}, "CPU limit"},
    };
    for (const auto& [words, ending] : endings) {
        SCOPED_TRACE(words.front());
        EXPECT_EQ(textOf(helper::ask(loneOddHelper(), {words, limits}, bytesOf(""))), ending);
        EXPECT_EQ(answerTo(words, limits), ending);
        EXPECT_EQ(answerTo({"echo"}, {}, "good"), "good");
    }
    EXPECT_EQ(answerTo({"hang"}, brief_), "wall limit");
    EXPECT_EQ(answerTo({"half"}, brief_), "wall limit");
    EXPECT_EQ(answerTo({"echo"}, {.memoryBytes = 1}), std::string(kAnswerBytes, 'M'));
    EXPECT_EQ(answerTo({"echo"}, {}, "good"), "good");
}

TEST_F(Keeper, KillsAChildThatIsNotWantedAnyMore) {
    pid_t child = 0;
    {
        Asked half = asked({"half"});
        ASSERT_TRUE(half.answer);
        std::string text(kAnswerBytes / 2, '\0');
        ASSERT_TRUE(half.answer->fill(std::as_writable_bytes(std::span(text))));
        child = processesIn(text).own;
        EXPECT_FALSE(isDead(child));
    }
    EXPECT_TRUE(diesSoon(child));
}

TEST_F(Keeper, LeavesEverythingAsItWasAfterManyQuestions) {
    const auto ask = [](int times) {
        for (int i = 0; i < times; ++i) {
            const std::string input = std::to_string(i);
            ASSERT_EQ(answerTo({"echo"}, {}, input), input);
        }
    };
    ask(50);
    const pid_t keeper = keeperProcess();
    const auto descriptors = openDescriptors();
    [[maybe_unused]] const long own = residentPages(::getpid());
    const long kept = residentPages(keeper);
    ask(2000);
    EXPECT_EQ(keeperProcess(), keeper);
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_LE(residentPages(keeper), kept + kept / 20 + 16);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LE(residentPages(::getpid()), own + own / 20 + 16);
#endif
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(Keeper, IsStartedAnewAfterItWasKilled) {
    const pid_t first = keeperProcess();
    ASSERT_EQ(::kill(first, SIGKILL), 0);
    ASSERT_TRUE(diesSoon(first));
    EXPECT_EQ(answerTo({"echo"}), "input");
    const pid_t second = keeperProcess();
    EXPECT_NE(second, first);
    EXPECT_NE(second, ::getpid());
}

TEST_F(Keeper, ThatIsKilledLosesNoQuestionOfWhichNothingWasAnswered) {
    const pid_t keeper = keeperProcess();
    Asked late = asked({"late", "100"});
    ASSERT_EQ(::kill(keeper, SIGKILL), 0);
    EXPECT_EQ(textOf(std::move(late)), "input");
}

TEST_F(Keeper, ThatIsKilledFailsAQuestionOfWhichAPartWasAnswered) {
    Asked half = asked({"half"});
    ASSERT_TRUE(half.answer);
    std::string text(kAnswerBytes / 2, '\0');
    ASSERT_TRUE(half.answer->fill(std::as_writable_bytes(std::span(text))));
    const Processes processes = processesIn(text);
    ASSERT_EQ(::kill(processes.parent, SIGKILL), 0);
    EXPECT_FALSE(half.answer->fill(std::as_writable_bytes(std::span(text))));
    EXPECT_EQ(half.answer->failure(), Failure::kFailed);
    EXPECT_TRUE(diesSoon(processes.own));
}

// A fork of this process that has a keeper, and a child of that at work.
class OtherOwner {
  public:
    // alsoFork: leaves a process behind that holds its sockets until this object ends
    explicit OtherOwner(bool alsoFork) {
        EXPECT_EQ(::pipe(told_.data()), 0);
        EXPECT_EQ(::pipe(held_.data()), 0);
        process_ = ::fork();
        if (process_ == 0) work(alsoFork);
        std::string text(kAnswerBytes / 2, '\0');
        EXPECT_GT(::read(told_[0], text.data(), text.size()), 0);
        left_ = processesIn(text);
    }
    OtherOwner(const OtherOwner&) = delete;
    OtherOwner& operator=(const OtherOwner&) = delete;
    ~OtherOwner() {
        for (const int end : {told_[0], told_[1], held_[0], held_[1]}) ::close(end);
    }

    Processes left() const { return left_; }

    void kill() const {
        ::kill(process_, SIGKILL);
        EXPECT_EQ(::waitpid(process_, nullptr, 0), process_);
    }

  private:
    [[noreturn]] void work(bool alsoFork) {
        answerTo({"echo"});
        Asked half = asked({"half"});
        std::string text(kAnswerBytes / 2, '\0');
        half.answer->fill(std::as_writable_bytes(std::span(text)));
        if (alsoFork && ::fork() == 0) {
            ::close(held_[1]);
            char nothing = 0;
            ::_exit(::read(held_[0], &nothing, 1) == 0 ? 0 : 1);
        }
        if (::write(told_[1], text.data(), text.size()) < 0) ::_exit(1);
        while (true) ::pause();
    }

    std::array<int, 2> told_{};
    std::array<int, 2> held_{};
    pid_t process_ = 0;
    Processes left_;
};

TEST_F(Keeper, EndsWithAnOwnerThatIsKilled) {
    for (const bool aForkHoldsItsSockets : {false, true}) {
        const OtherOwner owner(aForkHoldsItsSockets);
        ASSERT_GT(owner.left().own, 0);
        EXPECT_FALSE(isDead(owner.left().parent));
        EXPECT_FALSE(isDead(owner.left().own));
        owner.kill();
        EXPECT_TRUE(diesSoon(owner.left().parent));
        EXPECT_TRUE(diesSoon(owner.left().own));
    }
}

TEST_F(Keeper, EndsWhenItIsLetGoEvenIfAForkHoldsItsSockets) {
    const pid_t keeper = keeperProcess();
    const pid_t fork = ::fork();
    if (fork == 0) {
        ::pause();
        ::_exit(0);
    }
    helper::endKeepers();
    EXPECT_TRUE(diesSoon(keeper));
    ::kill(fork, SIGKILL);
    ::waitpid(fork, nullptr, 0);
}

TEST_F(Keeper, IsAnotherOneInAForkOfTheApplication) {
    const pid_t mine = keeperProcess();
    const std::string other = inFork([] {
        answerTo({"echo"});
        return answerTo({"parent"});
    });
    EXPECT_GT(processesIn(other).parent, 0);
    EXPECT_NE(processesIn(other).parent, mine);
    EXPECT_TRUE(diesSoon(processesIn(other).parent));
    EXPECT_EQ(keeperProcess(), mine);
}

TEST_F(Keeper, ServesAnApplicationThatIgnoresItsChildren) {
    helper::endKeepers();
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(answerTo({"echo"}), "input");
    EXPECT_EQ(answerTo({"crash"}), "failed");
    EXPECT_EQ(answerTo({"hang"}, brief_), "wall limit");
    std::signal(SIGCHLD, before);
}

TEST_F(Keeper, ServesAnApplicationThatReapsEveryChild) {
    helper::endKeepers();
    std::atomic<bool> isOver = false;
    std::thread reaper([&isOver] {
        while (!isOver) {
            if (::waitpid(-1, nullptr, WNOHANG) <= 0) std::this_thread::yield();
        }
    });
    for (int i = 0; i < 20; ++i) EXPECT_EQ(answerTo({"echo"}), "input");
    EXPECT_EQ(answerTo({"spin"}, {.cpu = std::chrono::seconds(1)}), "CPU limit");
    isOver = true;
    reaper.join();
}

TEST_F(Keeper, ServesSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread, &good] {
            for (int i = 0; i < 25; ++i) {
                const std::string input = std::to_string(thread) + " " + std::to_string(i);
                if (answerTo({"echo"}, {}, input) == input) ++good;
                if (i % 10 == 9 && answerTo({"crash"}) != "failed") --good;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, 100);
}

TEST_F(Keeper, FailsCleanlyWithoutFreeDescriptors) {
    keeperProcess();
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const auto open = static_cast<rlim_t>(openDescriptors());
    for (rlim_t free = 0; free < 12; ++free) {
        const rlimit tight{open + free, before.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
        const std::string answer = answerTo({"echo"});
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
        EXPECT_TRUE(answer == "input" || answer == "missing") << answer;
    }
    EXPECT_EQ(answerTo({"echo"}), "input");
}

TEST_F(Keeper, IsStartedAnewWhenTheEnvironmentOfFontsChanges) {
    const pid_t first = keeperProcess();
    ::setenv("FONTCONFIG_PATH", "/etc/fonts", 1);
    const pid_t second = keeperProcess();
    ::unsetenv("FONTCONFIG_PATH");
    EXPECT_NE(first, second);
    EXPECT_TRUE(diesSoon(first));
}

TEST_F(Keeper, IsDoneWithoutIfTheProgramCannotBeKept) {
    const DocumentFolder folder;
    const std::string text(kAnswerBytes - 4, ' ');
    const std::string path =
        folder.writeProgram("helper", "test \"$1\" = --keep && exit 1; printf 'good" + text + "'");
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(textOf(helper::ask({path, "", true}, {{}, {}}, bytesOf(""))), "good");
    }
}

}  // namespace
}  // namespace tavio::test
