// An input that a helper program opens once, for many questions.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/helper/server.h"

namespace tavio::helper {

// Any number of threads may ask at once. A child of the program's keeper opens the input, under the
// limits, and each question is answered by a child of that one, under the limits from 0. The first
// question is asked as any other: it may stay the only one. Where that child has ended, the next
// question has the input opened anew; where nothing can be kept, each question starts the program.
class OpenedInput {
  public:
    OpenedInput(Program program, const Limits& limits, Descriptor input);

    Asked ask(const std::vector<std::string>& words);

  private:
    struct Opening;

    std::shared_ptr<Opening> opening(const std::string& path);
    std::shared_ptr<Opening> open(const std::string& path) const;
    void drop(const std::shared_ptr<Opening>& opening);
    std::optional<Asked> askOpened(const std::string& path, const std::vector<std::string>& words);

    const Program program_;
    const Limits limits_;
    const std::shared_ptr<const Descriptor> input_;
    std::mutex mutex_;
    bool wasAsked_ = false;             // guarded by mutex_
    std::shared_ptr<Opening> opening_;  // guarded by mutex_; none if nothing is open
};

}  // namespace tavio::helper
