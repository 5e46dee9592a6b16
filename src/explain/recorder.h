// Records every move that a pass of a search tries, with its window, score and ending.
#pragma once

#include "search/searchObserver.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <vector>

struct PassReport;

// One move: 20 bytes, little endian in a file. The records of a pass are in the order of the
// search, so that the descendants of a record directly follow it.
struct MoveRecord {
    static constexpr std::uint32_t NO_PARENT = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::uint8_t CAPTURE = 8;      // in `kind`
    static constexpr std::uint8_t QUISCENCE = 0x80; // in `ending`
    static constexpr std::uint8_t ENDING_MASK = 0x7F;

    std::uint32_t parent; // index of the record of the move before; NO_PARENT at the root
    std::uint8_t from;    // squares: a1 = 0, b1 = 1, ..., h8 = 63; for a castling those of the king
    std::uint8_t to;
    std::uint8_t kind;   // promotion: 0 none, 1 knight, 2 bishop, 3 rook, 4 queen; plus CAPTURE
    std::uint8_t ending; // MoveEnding, plus QUISCENCE if the quiescence search tried the move
    std::int32_t alfa;   // the node's window when the move was tried, and the score; all for the
    std::int32_t beta;   // side that makes the move, in the unit of score.h
    std::int32_t score;  // without meaning if isLmfCut(ending)

    bool isQuiscence() const { return (ending & QUISCENCE) != 0; }
    MoveEnding getEnding() const { return static_cast<MoveEnding>(ending & ENDING_MASK); }
};
static_assert(sizeof(MoveRecord) == 20);

// Must watch an Ida from the first pass of deepen().
class Recorder final : public SearchObserver {
public:
    // Records are dropped so that there are at most `_capacity`, 1 or more: first all of the
    // quiescence, then ply by ply the deepest ones of the tree. The first pass starts with all
    // plies again, and so does every other one.
    explicit Recorder(std::size_t _capacity = 4'000'000);

    void doMove(const Move& move) override;
    void explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                            MoveEnding ending) override;
    void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                              MoveEnding ending) override;
    void explainEndTreePass(IdaNS::GeneratingResult result) override;

    // The records of the pass that has ended last. They stay until the next pass begins.
    const std::vector<MoveRecord>& getRecords() const { return records; }
    // Whether they include the quiescence.
    bool hasQuiscence() const { return keptPlies > keptDepth; }
    // The plies of the tree that they include: the depth of the pass, unless even the tree has too
    // many moves.
    int getTreePlies() const { return hasQuiscence() ? keptDepth : keptPlies; }

private:
    static constexpr int ALL_PLIES = std::numeric_limits<int>::max();

    void begin();
    void finish(int alfa, int beta, const Variant& localVariant, std::uint8_t ending);
    void makeRoom();
    void dropPliesFrom(int first);

    const std::size_t capacity;
    std::vector<MoveRecord> records;
    std::vector<std::uint32_t> path; // indices of the moves on the path, as far as they are kept
    int ply = 0;                     // moves on the path
    int keptPlies = ALL_PLIES;       // deeper moves are not kept
    int depth = 1;                   // of the pass under way or the next one
    int keptDepth = 1;               // of the pass that the records belong to
    bool isOver = true;              // whether that pass has ended
};

// Writes a pass to a binary stream: a header, then the records. The header has the layout of a
// record: the number of records, the depth, the tree's plies, 1 or 0 for with or without
// quiescence, IdaNS::GeneratingResult, and the root's window and the score for the side to move.
void writeRecords(std::ostream& stream, const Recorder& recorder, const PassReport& pass);
