// A file that one process has for itself and adds to, line by line.
#pragma once

#include <cstdint>
#include <string>

class LockedFile {
public:
    // Opens the file, or makes an empty one. Throws std::system_error if that fails, with the
    // code std::errc::device_or_resource_busy if another process has it so.
    explicit LockedFile(const std::string& path);
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    ~LockedFile();

    // Cuts the file off behind `length` bytes. Throws std::system_error if that fails.
    void cutOff(std::size_t length);
    // Adds the text at the end, whole and at once. Throws std::system_error if that fails.
    void append(const std::string& text);

private:
    std::intptr_t handle; // the system's name of the file
};
