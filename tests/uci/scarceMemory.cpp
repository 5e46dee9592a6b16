// Preloaded into the engine, it makes one allocation fail: that with the number in
// KESTRAN_FAILING_ALLOCATION, counted from the start of the process. At exit it prints the number
// of allocations on standard error.

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <unistd.h>

// The library's own names.
extern "C" {
void* realMalloc(std::size_t size) __asm__("__libc_malloc");
void* realCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void* realRealloc(void* block, std::size_t size) __asm__("__libc_realloc");
}

namespace {

std::atomic<long> allocations = 0;

bool isToFail() {
    static const long failing = [] {
        const char* wish = std::getenv("KESTRAN_FAILING_ALLOCATION");
        return wish == nullptr ? 0 : std::atol(wish);
    }();
    if (++allocations != failing) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

[[gnu::destructor]] void printAllocations() {
    const long count = allocations;
    const std::string text = "allocations: " + std::to_string(count) + '\n';
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

void* malloc(std::size_t size) {
    return isToFail() ? nullptr : realMalloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    return isToFail() ? nullptr : realCalloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    return isToFail() ? nullptr : realRealloc(block, size);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
