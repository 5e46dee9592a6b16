// Texts of positions, a line each: four to six fields of FEN, then operations that end in
// or begin with a semicolon.
#pragma once

#include "board/position.h"

#include <iosfwd>
#include <string>
#include <vector>

struct EpdRecord {
    int line;        // of the text, from 1
    std::string fen; // the fields as the text has them, a blank between two
    Position position;
    // The words of each operation, its name first, such as "bm" and "e2e4".
    std::vector<std::vector<std::string>> operations;
};

struct EpdText {
    std::vector<EpdRecord> records;
    int faultLine = 0;   // the first line whose position cannot be played; 0 if there is none
    std::string fault{}; // why not
};

// Reads a text up to a position that cannot be played. Empty lines and lines that begin with "#"
// are passed over.
EpdText readEpd(std::istream& text);
