// The record of a watched line, drawn as a tree for the terminal.
#pragma once

#include "kestran-explain/watchedLine.h"

#include <iosfwd>
#include <string>

// Draws pass by pass the nodes of the line: the line's moves, which a star marks, and
// those that raised alfa or cut their node off, or all of them.
class TreeReport {
public:
    // `_line` must outlive the object. `_colour` adds terminal sequences.
    TreeReport(const WatchedLine& _line, bool _all, bool _colour);

    // What stands above the passes, and one of these, each made of whole lines.
    std::string getHead() const;
    std::string getPass(int pass) const;

private:
    void printNode(std::ostream& stream, int pass, int ply, const std::string& prefix) const;
    void printMove(std::ostream& stream, int pass, int ply, const NodeMoveInfo& info,
                   const std::string& stem) const;
    std::string leftOutLine(int pass, int ply) const;
    std::string reasonOf(int pass, int ply, const NodeMoveInfo& info) const;
    const char* colourOf(const NodeMoveInfo& info) const;
    std::string paint(const char* code, const std::string& text) const;

    const WatchedLine& line;
    bool all;
    bool colour;
};
