// The record of a watched line, drawn as a tree for the terminal.
#pragma once

#include "explain/watchedLine.h"

#include <cstddef>
#include <iosfwd>
#include <string>

// Draws pass by pass the nodes of the line: the line's moves, which a star marks, and
// those that raised alfa or cut their node off, or all of them.
class TreeReport {
public:
    // `_line` must outlive the object. `_colour` adds terminal sequences. Lines are wrapped at
    // `_width` columns.
    TreeReport(const WatchedLine& _line, bool _all, bool _colour, std::size_t _width);

    // The lines above the passes, and those of one pass.
    std::string getHead() const;
    std::string getPass(int pass) const;

private:
    void printNode(std::ostream& stream, int pass, int ply, const std::string& prefix) const;
    void printMove(std::ostream& stream, int pass, int ply, const NodeMoveInfo& info,
                   const std::string& stem, const std::string& trunk) const;
    std::string leftOutLine(int pass, int ply) const;
    std::string reasonOf(int pass, int ply, const NodeMoveInfo& info) const;
    const char* colourOf(const NodeMoveInfo& info) const;
    // A text that begins in `column`, in colour, with `trunk` before each further line.
    std::string wrap(const char* code, const std::string& text, std::size_t column,
                     const std::string& trunk) const;
    std::string paint(const char* code, const std::string& text) const;

    const WatchedLine& line;
    bool all;
    bool colour;
    std::size_t width; // columns
};
