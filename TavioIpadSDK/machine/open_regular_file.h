// Opening a file that is only to be read, without ever waiting.
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

// The regular file at the path, open for reading; otherwise none, and errno says why: ENOENT where
// nothing has that name (as with an empty path or one with a NUL byte, which C calls would cut
// short), EISDIR or ESPIPE as above, or what the system says.
inline Descriptor openRegularFile(const std::string& path) {
    struct stat status {};
    int error = path.find('\0') == std::string::npos ? 0 : ENOENT;
    if (error == 0 && ::stat(path.c_str(), &status) != 0) error = errno;
    if (error == 0) error = irregularity(status);
    Descriptor file;
    if (error == 0) {
        // The path may meanwhile name a pipe. Without O_NONBLOCK, opening one that nobody writes
        // to would never come back.
        file.reset(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        if (!file.isOpen() || ::fstat(file.get(), &status) != 0) error = errno;
    }
    if (error == 0) error = irregularity(status);
    if (error == 0) return file;
    errno = error;
    return Descriptor();
}

}  // namespace tavio::machine
