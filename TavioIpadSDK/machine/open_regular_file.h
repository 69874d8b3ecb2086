// Opening a file for reading, without ever waiting.
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::machine {

// 0 for a regular file, EISDIR for a folder, ESPIPE for anything else: a pipe or a device could
// block, never end, or do something when it is opened.
inline int irregularity(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return 0;
    return S_ISDIR(status.st_mode) ? EISDIR : ESPIPE;
}

// The regular file at the path, open for reading. On failure none, with errno set: ENOENT if the
// path names nothing (also if it is empty or has a NUL byte, at which C calls would end it), EISDIR
// or ESPIPE as above, or the system's error.
inline Descriptor openRegularFile(const std::string& path) {
    struct stat status {};
    int error = path.find('\0') == std::string::npos ? 0 : ENOENT;
    if (error == 0 && ::stat(path.c_str(), &status) != 0) error = errno;
    if (error == 0) error = irregularity(status);
    Descriptor file;
    if (error == 0) {
        // The path may name a pipe by now. Without O_NONBLOCK, opening a pipe without a writer
        // never returns.
        file.reset(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        if (!file.isOpen() || ::fstat(file.get(), &status) != 0) error = errno;
    }
    if (error == 0) error = irregularity(status);
    if (error == 0) return file;
    errno = error;
    return Descriptor();
}

}  // namespace tavio::machine
