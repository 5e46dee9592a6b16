#include "support/lockedFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void fail() {
    throw std::system_error(errno, std::generic_category());
}

int fileOf(std::intptr_t handle) {
    return static_cast<int>(handle);
}

} // namespace

LockedFile::LockedFile(const std::string& path)
    : handle(open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666)) {
    if (handle < 0) {
        fail();
    }
    if (flock(fileOf(handle), LOCK_EX | LOCK_NB) != 0) {
        close(fileOf(handle));
        throw std::system_error(std::make_error_code(std::errc::device_or_resource_busy));
    }
}

LockedFile::~LockedFile() {
    close(fileOf(handle));
}

void LockedFile::cutOff(std::size_t length) {
    if (ftruncate(fileOf(handle), static_cast<off_t>(length)) != 0) {
        fail();
    }
}

void LockedFile::append(const std::string& text) {
    errno = EIO; // unless the fault has another name
    if (write(fileOf(handle), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        fail();
    }
}
