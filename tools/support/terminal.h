// The terminal that standard output goes to.
#pragma once

#include <cstddef>

// Columns of the terminal; 0 if standard output is no terminal or its width is not known.
std::size_t getTerminalWidth();
