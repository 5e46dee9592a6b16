#include "support/textFile.h"

#include "support/text.h"

#include <cerrno>
#include <filesystem>
#include <random>
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

// Where the file is written first: under a new name in its folder, or in place if it cannot be
// replaced, like a device, a pipe or a folder.
fs::path draftOf(const fs::path& target) {
    std::error_code fault;
    const bool isFixture = fs::exists(target, fault) && !fs::is_regular_file(target, fault);
    const std::string mark = ".part" + std::to_string(std::random_device{}());
    return isFixture ? target : fs::path(target.string() + mark);
}

std::string faultText(const std::string& path, const std::error_code& reason) {
    return "the file " + path + " cannot be written: " + reason.message();
}

// The reason if that fails.
std::error_code writeTo(const fs::path& target, const std::string& text,
                        std::ios::openmode mode = std::ios::trunc) {
    errno = EIO; // unless the fault has another name
    std::ofstream file(target, std::ios::binary | std::ios::out | mode);
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
    if (path.empty()) {
        throw UsageError("a file to be written needs a name");
    }
    const fs::path target = targetOf(path);
    const fs::path draft = draftOf(target);
    std::error_code fault;
    std::error_code ignored;
    if (fs::exists(target, ignored) && !fs::is_fifo(target, ignored)) {
        fault = writeTo(target, "", std::ios::app);
    }
    if (!fault && draft != target) {
        fault = writeTo(draft, "");
        fs::remove(draft, ignored);
    }
    if (fault) {
        throw UsageError(faultText(path, fault));
    }
}

void writeWhole(const std::string& path, const std::string& text) {
    const fs::path target = targetOf(path);
    const fs::path draft = draftOf(target);
    const bool isReplaced = draft != target;
    std::error_code fault = writeTo(draft, text);
    std::error_code ignored;
    if (isReplaced && !fault) {
        if (const fs::file_status old = fs::status(target, ignored); fs::exists(old)) {
            fs::permissions(draft, old.permissions(), ignored);
        }
        fs::rename(draft, target, fault);
    }
    if (fault) {
        if (isReplaced) {
            fs::remove(draft, ignored);
        }
        throw std::runtime_error(faultText(path, fault));
    }
}
