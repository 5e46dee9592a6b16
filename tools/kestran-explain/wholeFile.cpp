#include "kestran-explain/wholeFile.h"

#include "support/commandLine.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::string faultText(const std::string& path, int fault) {
    return "cannot write " + path + ": " + std::strerror(fault); // NOLINT(concurrency-mt-unsafe)
}

// Whether all of `text` went to the descriptor, which is closed; errno tells why not.
bool writeAll(int descriptor, const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(descriptor, text.data() + written, text.size() - written);
        if (count < 0 && errno != EINTR) {
            const int fault = errno;
            close(descriptor);
            errno = fault;
            return false;
        }
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return close(descriptor) == 0;
}

// A device or a pipe keeps its place.
bool isSpecial(const std::string& path) {
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    return fs::exists(status) && !fs::is_regular_file(status);
}

} // namespace

WholeFile::WholeFile(const std::string& _path) : path(_path) {
    std::error_code ignored;
    if (!isSpecial(path) && !path.empty()) {
        path = fs::weakly_canonical(fs::absolute(path, ignored), ignored).string();
    }
    const bool isThere = fs::exists(path, ignored);
    const std::string folder = fs::path(path).parent_path().string();
    if (fs::is_directory(path, ignored)) {
        throw UsageError(faultText(_path, EISDIR));
    }
    if ((isThere && access(path.c_str(), W_OK) != 0) ||
        (!isSpecial(path) && access(folder.c_str(), W_OK | X_OK) != 0)) {
        throw UsageError(faultText(_path, errno));
    }
}

std::string WholeFile::write(const std::string& text) const {
    if (isSpecial(path)) {
        const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        return descriptor >= 0 && writeAll(descriptor, text) ? "" : faultText(path, errno);
    }
    const std::string part = path + ".part" + std::to_string(getpid());
    const int descriptor = open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return faultText(path, errno);
    }
    if (!writeAll(descriptor, text) || std::rename(part.c_str(), path.c_str()) != 0) {
        const int fault = errno;
        unlink(part.c_str());
        return faultText(path, fault);
    }
    return "";
}
