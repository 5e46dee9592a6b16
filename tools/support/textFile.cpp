#include "support/textFile.h"

#include "support/text.h"
#include "support/system.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace {

namespace fs = std::filesystem;

// What `path` leads to, with all links resolved.
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

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::string faultText(const std::string& path, const std::error_code& reason) {
    return "the file " + path + " cannot be written: " + reason.message();
}

// The reason if that fails.
std::error_code writeTo(const fs::path& target, const std::string& text) {
    errno = EIO; // unless the fault has another name
    std::ofstream file(target, std::ios::binary);
    file << text;
    file.close();
    return file ? std::error_code() : lastError();
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
    if (path.empty()) {
        throw UsageError("a file to be written needs a name");
    }
    const fs::path target = targetOf(path);
    std::error_code ignored;
    std::error_code fault;
    if (fs::is_directory(target, ignored)) {
        fault = std::make_error_code(std::errc::is_a_directory);
    } else if (fs::exists(target, ignored)) {
        fault = whyNoWritingTo(target.string());
    }
    if (!fault && !isFixture(target)) {
        const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
        fault = whyNoFilesIn(folder.string());
    }
    if (fault) {
        throw UsageError(faultText(path, fault));
    }
}

void writeWhole(const std::string& path, const std::string& text) {
    const fs::path target = targetOf(path);
    if (isFixture(target)) {
        if (const std::error_code fault = writeTo(target, text)) {
            throw std::runtime_error(faultText(path, fault));
        }
        return;
    }
    const fs::path draft = target.string() + ".part" + std::to_string(getProcessNumber());
    std::error_code fault = writeTo(draft, text);
    std::error_code ignored;
    if (const fs::file_status old = fs::status(target, ignored); !fault && fs::exists(old)) {
        fs::permissions(draft, old.permissions(), ignored);
    }
    if (!fault) {
        fs::rename(draft, target, fault);
    }
    if (fault) {
        fs::remove(draft, ignored);
        throw std::runtime_error(faultText(path, fault));
    }
}
