// The engine of the modern front end as a process.
#pragma once

#include <string>

// Runs the engine on standard input and output. If a line is given, executes only that.
void runModernEngine(const std::string& onlyLine);
