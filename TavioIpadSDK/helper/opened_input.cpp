#include "TavioIpadSDK/helper/opened_input.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "TavioIpadSDK/helper/find_helper.h"
#include "TavioIpadSDK/helper/lone_program.h"
#include "TavioIpadSDK/helper/shared_keepers.h"

namespace tavio::helper {

namespace {

constexpr int kAttempts = 2;  // the first may find a process that has just ended

bool isKnown(const Ending& ending) {
    return ending.exitStatus || ending.signal;
}

}  // namespace

// The child that has the input open.
struct OpenedInput::Opening {
    std::unique_ptr<Leash> leash;
    Server questions;

    explicit Opening(Server::Opened opened)
        : leash(std::move(opened.leash)), questions(std::move(opened.socket)) {}

    // How the child ended, to be asked after its sockets were closed: it is known soon, or not at all.
    std::optional<Ending> endingBefore(Deadline deadline) const {
        const Deadline soon = std::chrono::steady_clock::now() + std::chrono::seconds(1);
        std::optional<Ending> ending = leash->waitForEnd(std::min(deadline, soon));
        if (ending) ending->processorTime = {};  // counts that of all its children
        return ending;
    }
};

namespace {

// A child of the one that has the input open, which takes it along when it ends.
template <typename Opening>
class OpenedChild : public Leash {
  public:
    OpenedChild(std::unique_ptr<Leash> own, std::shared_ptr<Opening> opening)
        : own_(std::move(own)), opening_(std::move(opening)) {}

    std::optional<Ending> waitForEnd(Deadline deadline) override {
        const std::optional<Ending> ending = own_->waitForEnd(deadline);
        if (!ending || isKnown(*ending)) return ending;
        const std::optional<Ending> reason = opening_->endingBefore(deadline);
        return reason ? reason : ending;
    }

  private:
    std::unique_ptr<Leash> own_;
    std::shared_ptr<Opening> opening_;
};

}  // namespace

OpenedInput::OpenedInput(Program program, const Limits& limits, Descriptor input)
    : program_(std::move(program)),
      limits_(clamped(limits)),
      input_(std::make_shared<const Descriptor>(std::move(input))) {}

Asked OpenedInput::ask(const std::vector<std::string>& words) {
    const std::string path = program_.path.empty() ? findHelper(program_.name) : "";
    if (!path.empty() && program_.mayBeKept) {
        std::optional<Asked> asked = askOpened(path, words);
        if (asked) return *std::move(asked);
    }
    return helper::ask(program_, {words, limits_}, *input_);
}

// none: the question is to be asked of a program of its own.
std::optional<Asked> OpenedInput::askOpened(const std::string& path,
                                            const std::vector<std::string>& words) {
    const Deadline deadline = std::chrono::steady_clock::now() + limits_.wall;
    const std::vector<std::string> line = commandLine(words, limits_);
    std::optional<Ending> ending;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::shared_ptr<Opening> opened = opening(path);
        if (!opened) return std::nullopt;
        std::optional<Running> process = opened->questions.ask(line, nullptr);
        if (!process) {
            drop(opened);
            ending = opened->endingBefore(deadline);
            continue;
        }
        process->leash = std::make_unique<OpenedChild<Opening>>(std::move(process->leash), opened);
        return Asked{AnswerStream(*std::move(process), limits_, deadline,
                                  [path, line, input = input_] {
                                      return startLoneProgram(path, line, *input);
                                  }),
                     Failure::kFailed};
    }
    const bool diesOfInput = ending && isKnown(*ending) && ending->exitStatus != 0;
    if (!diesOfInput) return std::nullopt;
    return Asked{std::nullopt, failureOf(*ending, limits_)};
}

std::shared_ptr<OpenedInput::Opening> OpenedInput::opening(const std::string& path) {
    const std::lock_guard lock(mutex_);
    if (!std::exchange(wasAsked_, true)) return nullptr;
    if (opening_ && opening_->questions.isInherited()) opening_.reset();
    if (!opening_) opening_ = open(path);
    return opening_;
}

std::shared_ptr<OpenedInput::Opening> OpenedInput::open(const std::string& path) const {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::shared_ptr<Server> keeper = sharedKeeper(path);
        if (!keeper) return nullptr;
        std::optional<Server::Opened> opened = keeper->open(commandLine({}, limits_), *input_);
        if (opened) return std::make_shared<Opening>(*std::move(opened));
        dropKeeper(path, keeper);
    }
    return nullptr;
}

void OpenedInput::drop(const std::shared_ptr<Opening>& opening) {
    const std::lock_guard lock(mutex_);
    if (opening_ == opening) opening_.reset();
}

}  // namespace tavio::helper
