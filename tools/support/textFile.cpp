#include "support/textFile.h"

#include "support/commandLine.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// What `path` leads to behind all links.
fs::path targetOf(const std::string& path) {
    std::error_code fault;
    const fs::path target = fs::weakly_canonical(path, fault);
    return fault ? fs::path(path) : target;
}

// Something that is there and cannot be replaced by a file: a device, a pipe, a folder.
bool isFixture(const fs::path& target) {
    std::error_code fault;
    return fs::exists(target, fault) && !fs::is_regular_file(target, fault);
}

[[noreturn]] void failToWrite(const std::string& path, const std::error_code& reason) {
    throw std::runtime_error("the file " + path + " cannot be written: " + reason.message());
}

// The reason if that fails.
std::error_code writeTo(const fs::path& target, const std::string& text) {
    errno = 0;
    std::ofstream file(target, std::ios::binary);
    file << text;
    file.close();
    return file ? std::error_code() : std::error_code(errno, std::generic_category());
}

} // namespace

std::ifstream openText(const std::string& path) {
    std::ifstream file(path);
    file.peek(); // a folder can be opened, but not read
    if (!file.is_open() || file.bad()) {
        throw UsageError("the file " + path + " cannot be opened");
    }
    file.clear(); // an empty one has already come to its end
    return file;
}

void requireWritable(const std::string& path) {
    const fs::path target = targetOf(path);
    std::error_code fault;
    const fs::path parent = target.has_parent_path() ? target.parent_path() : fs::path(".");
    const fs::path touched = isFixture(target) ? target : parent;
    if (path.empty() || fs::is_directory(target, fault) || access(touched.c_str(), W_OK) != 0) {
        throw UsageError("the file \"" + path + "\" cannot be written");
    }
}

void writeWhole(const std::string& path, const std::string& text) {
    const fs::path target = targetOf(path);
    if (isFixture(target)) {
        if (const std::error_code fault = writeTo(target, text)) {
            failToWrite(path, fault);
        }
        return;
    }
    const fs::path draft = target.string() + ".part" + std::to_string(getpid());
    std::error_code fault = writeTo(draft, text);
    if (!fault) {
        fs::rename(draft, target, fault);
    }
    if (fault) {
        std::error_code ignored;
        fs::remove(draft, ignored);
        failToWrite(path, fault);
    }
}
