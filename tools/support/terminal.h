// What tools show on a terminal beside their report.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Whether standard output goes to a terminal.
bool isStandardOutputTerminal();
// Columns of that terminal; 0 if there is none or its width is not known.
std::size_t getTerminalWidth();

// The value of an environment variable, empty if it is not set.
std::string_view getVariable(const char* name);

// Whether standard output takes colours: a terminal that is not "dumb", of a user who has not set
// NO_COLOR.
bool isColourWanted();

// A line on standard error that shows the progress of long work. Shows nothing if standard error is
// no terminal, or a "dumb" one.
class Progress {
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { show(""); } // wipes the line

    void show(const std::string& text);

private:
    bool isShown;
};
