// Files of positions, a line each: four to six fields of FEN, then operations that end in
// or begin with a semicolon.
#pragma once

#include "board/position.h"

#include <string>
#include <vector>

struct EpdRecord {
    int line;        // of the file, from 1
    std::string fen; // the fields as the file has them, a blank between two
    Position position;
    std::vector<std::string> operations; // such as "D1 20" or "bm e2e4", without semicolons
};

// The positions of a file. Empty lines and lines that begin with "#" are passed over.
// UsageError if the file cannot be read, holds no position, or one that cannot be played.
std::vector<EpdRecord> readEpd(const std::string& path);
