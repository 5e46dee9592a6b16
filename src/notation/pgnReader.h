// Reads games in PGN.
#pragma once

#include "notation/pgn.h"

#include <optional>
#include <string>
#include <string_view>

// Where a text cannot be read. Line and column count from 1, the column in bytes.
struct PgnFault {
    int line;
    int column;
    std::string reason; // what was expected there
};

// Reads the games of a text one by one. A game ends with its result or where the tags of the next
// one begin. Skips variations, numbers of moves and lines that begin with "%". Of several glyphs
// after a move, keeps the first. The bytes of comments and tags are not interpreted, but a line
// break in a comment becomes a blank.
class PgnReader {
public:
    // The text must outlive the object.
    explicit PgnReader(std::string_view _text);

    // The next game; nothing at the end of the text, or if the game cannot be read.
    std::optional<PgnGame> next();
    // Why next() returned nothing before the end of the text.
    const std::optional<PgnFault>& getFault() const { return fault; }

private:
    void fail(std::size_t place, const std::string& reason);
    std::size_t findEnd(std::string_view letters, std::size_t from) const;
    std::size_t findNonBlank(std::size_t from) const;
    bool hasLetter(std::size_t place, char letter) const;
    bool skipBlanks();

    void readToken();
    void readTag();
    void addTag(const std::string& name, const std::string& value, std::size_t place);
    void readComment();
    std::string_view takeComment();
    void skipVariation();
    void readGlyph();
    void readWord();
    void readMove(const std::string& word, std::size_t place);
    void annotate(int nag);

    const std::string_view text;
    std::size_t at = 0; // offset of what is read next
    std::optional<PgnFault> fault;

    // The game that is being read.
    PgnGame game;
    NumberedGame present{}; // after its moves so far
    std::string setUp{};    // value of the tag SetUp
    bool hasBegun = false;  // whether it has a tag, a move or a result
    bool isOver = false;
};
