#include "support/lockedFile.h"

#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace {

[[noreturn]] void fail() {
    const DWORD fault = GetLastError();
    if (fault == ERROR_SHARING_VIOLATION) {
        throw std::system_error(std::make_error_code(std::errc::device_or_resource_busy));
    }
    throw std::system_error(static_cast<int>(fault), std::system_category());
}

HANDLE handleOf(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

} // namespace

// Others may read it, as this process does beside.
LockedFile::LockedFile(const std::string& path)
    : handle(reinterpret_cast<std::intptr_t>(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                                                         FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                                         FILE_ATTRIBUTE_NORMAL, nullptr))) {
    if (handleOf(handle) == INVALID_HANDLE_VALUE) {
        fail();
    }
}

LockedFile::~LockedFile() {
    CloseHandle(handleOf(handle));
}

void LockedFile::cutOff(std::size_t length) {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(length);
    if (SetFilePointerEx(handleOf(handle), end, nullptr, FILE_BEGIN) == 0 ||
        SetEndOfFile(handleOf(handle)) == 0) {
        fail();
    }
}

void LockedFile::append(const std::string& text) {
    DWORD count = 0;
    if (SetFilePointerEx(handleOf(handle), {}, nullptr, FILE_END) == 0 ||
        WriteFile(handleOf(handle), text.data(), static_cast<DWORD>(text.size()), &count,
                  nullptr) == 0) {
        fail();
    }
}
