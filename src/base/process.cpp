#include "base/process.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

void prepareMemory() {
    // Exits where the allocation fails, because an exception would be misread: a stream takes
    // one for the end of its input, and a thread aborts.
    std::set_new_handler([] {
        std::fputs("kestran: out of memory\n", stderr);
        std::_Exit(1);
    });
#ifdef M_MMAP_THRESHOLD
    constexpr int LARGE_BLOCK = 1 << 20; // bytes
    mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK);
#endif
}

void endProcess() {
    std::_Exit(0);
}
