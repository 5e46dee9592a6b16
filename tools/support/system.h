// What only the tools need from the operating system: terminals, file permissions, limits and
// load. Implemented in systemPosix.cpp and systemWindows.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <system_error>

// Whether the stream goes to a terminal.
bool isStandardOutputTerminal();
bool isStandardErrorTerminal();
// Columns of the terminal of standard output; 0 if there is none or its width is not known.
std::size_t getTerminalWidth();

// The process id.
int getProcessNumber();

// The error that writing the existing file `file`, or creating a file in `folder`, would give;
// empty if none. Windows reports only that the folder does not exist.
std::error_code whyNoWritingTo(const std::string& file);
std::error_code whyNoFilesIn(const std::string& folder);

// Raises the limit of open files and pipes to the most that the system allows.
void raiseFileLimit();

// The one-minute load average; 0 if the system has none.
double getSystemLoad();
