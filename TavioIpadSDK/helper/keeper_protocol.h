// The protocol between the library and a helper program that is kept:
//
//   NAME --keep
//
// It loads what every question needs, once, and waits for messages on file descriptor 0, a socket of
// whole messages. The first one brings a pidfd of the process that it serves, its owner. It sends a
// message of one byte when it has loaded everything.
//
//   message = KIND words, each ended by a zero byte; with file descriptors
//   KIND    = one byte:
//     O   a pidfd of the owner. No words.
//     A   a question. CPU MEMORY WORDS... (ask_program.h) with a leash, the answer's pipe, and the
//         input. A child of the keeper answers.
//     I   an input for many questions. CPU MEMORY with a leash, a socket, and the input. A child of
//         the keeper opens the input once and takes questions on that socket, without the input, which
//         children of its own answer.
//   leash   = a socket of whole messages. When the child has ended, its ending comes as EndingMessage,
//             and the socket is closed. The child is killed when the other end is closed.
//
// A message that cannot be understood or served has no ending: its leash is closed.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavio::helper {

inline constexpr const char* kKeepWord = "--keep";

inline constexpr char kOwnerMessage = 'O';
inline constexpr char kQuestionMessage = 'A';
inline constexpr char kInputMessage = 'I';

inline constexpr std::size_t kMaxMessageBytes = std::size_t{1} << 14;

struct EndingMessage {
    std::int32_t status = 0;  // as of wait()
    std::int32_t reserved = 0;
    std::int64_t processorMicroseconds = 0;
};

// The exit status of a child that ran out of memory before it could answer.
inline constexpr int kOutOfMemoryStatus = 3;

}  // namespace tavio::helper
