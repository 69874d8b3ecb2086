// The loop of a kept program: each question is answered by a child of its own.
#pragma once

#include <chrono>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/resource.h>
#include <vector>

#include "TavioIpadSDK/helper/descriptor_message.h"
#include "TavioIpadSDK/helper/program/children.h"
#include "TavioIpadSDK/helper/program/limits.h"
#include "TavioIpadSDK/helper/program/program.h"

namespace tavio::helper_program {

// What one loop serves.
struct Service {
    const Program* program = nullptr;
    TaskMaker taskOf;
    machine::Descriptor socket;          // brings the messages (helper/keeper_protocol.h)
    machine::Descriptor owner;           // a pidfd; none: the parent ends this process
    bool inputComesWithQuestion = true;  // else taskOf knows it, and no other is opened
    std::optional<std::chrono::seconds> idleLimit;  // ends without a question for that long
    rlim_t freshSpace = 0;  // what a program takes that was just started: not counted again
};

// Returns in the process that called it, when nobody can ask any more and all children have ended, or
// with its owner's end; then, the children are killed.
//
// A process that has used half of its processor time takes no more questions, and ends when those that
// it has are answered: whoever asks starts another.
class QuestionLoop {
  public:
    explicit QuestionLoop(Service service);
    void run();

  private:
    bool wait();
    bool hasOwner() const;
    bool isUsedUp() const;
    void retire();
    void takeMessages();
    void serve(helper::Message message);
    bool isUnderstood(const helper::Message& message, char kind) const;
    [[noreturn]] void performInChild(helper::Message message, pid_t parent);
    void leaveParent();
    [[noreturn]] void answer(helper::Message& message, pid_t parent);
    [[noreturn]] void openInput(helper::Message& message, pid_t parent);
    bool isBelowFresh(const Limits& limits) const;
    Limits onTopOfOwn(Limits limits) const;

    Service service_;
    machine::Descriptor childEnds_;  // a signalfd
    Children children_;
};

}  // namespace tavio::helper_program
