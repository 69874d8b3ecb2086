#include "TavioIpadSDK/helper/sealed_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "TavioIpadSDK/machine/write_all.h"

namespace tavio::helper {

machine::Descriptor sealedFile(std::span<const Byte> bytes) {
    constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    machine::Descriptor file(::memfd_create("input", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.isOpen()) return file;
    int error = machine::writeAll(file.get(), std::as_bytes(bytes));
    if (error == 0 && ::lseek(file.get(), 0, SEEK_SET) != 0) error = errno;
    if (error == 0 && ::fcntl(file.get(), F_ADD_SEALS, kSeals) != 0) error = errno;
    if (error == 0) return file;
    errno = error;
    return machine::Descriptor();
}

}  // namespace tavio::helper
