// The object that holds everything the passes of a search share, and the searches of
// one pass: the tree to the depth of the pass, and quiescence below it.
//
// Every score of a node is for the side to move there, in thousandths of a pawn. Both
// searches are fail-hard alpha-beta; `alfa` and `beta` are the node's window. While a
// search runs, the whole object belongs to its thread.
#pragma once

#include "base/engineParameters.h"
#include "base/platform.h"
#include "board/boardRepresentation.h"
#include "opening/polyglot.h"
#include "search/generatorInterface.h"
#include "search/hashTable.h"
#include "search/searchObserver.h"
#include "search/searchRepresentation.h"

#include <array>
#include <cstdint>
#include <vector>

class IdaVariant;

// Half-move clock, in plies, at which both searches call a draw.
inline constexpr int MAX_HALF_MOVE_CLOCK = 100;

// `Observer` is told of every move; see searchObserver.h.
template <class Observer> class BasicTreeGenerator final : public GeneratorInterface {
public:
    // The stop flag is polled when the node counter passes this value.
    static constexpr int TIME_CHECK_AFTER_NODES = 20000;
    // The node counter while a pass is being abandoned: out of reach of counting.
    static constexpr int TIME_CHECK_QUIT = 40000;
    static constexpr int REPETITION_TABLE_DEFAULT_SIZE = 1024; // buckets
    static constexpr int KILLER_PLIES = MAX_VARIANT_MOVES;     // rows of `killers`
    static constexpr int KILLERS_PER_PLY = 128 * 128;          // by origin and target
    static constexpr int KILLERS_SIZE = KILLER_PLIES * KILLERS_PER_PLY;
    static constexpr std::size_t MAX_USED_SLOTS = 1 << 20; // that the search remembers
    // Milliseconds past the budget at which the driver gives up.
    static constexpr int SAFE_BEFORE_TIMEOUT = 5;

    // `_config` is shared and must outlive the object.
    explicit BasicTreeGenerator(EngineConfig* _config);

    // ---- One pass ----

    // Searches to actualMoveDepth with the window firstAlpha, firstBeta. The line in
    // `variant` is replaced if the score lies inside the window, emptied if it is at
    // or above firstBeta, and otherwise stays; `evaluation` is always set. Unless
    // `skipOpening`, a book move is the whole answer. If the pass is abandoned,
    // isAbandoned() is true and `position` stands anywhere inside the tree.
    void generateTree(Position& position, Variant& variant, bool skipOpening);
    void generateTree(Position& position, Variant& variant) override;

    // One node, `depth` plies below the root. A move that raises `alfa` and stays
    // below `beta` makes the line; otherwise it stays as it was given.
    void generateTreeRek(Position& position, Variant& outputVar, int alfa, int beta, int depth);

    // Appends moves from the table to a line that starts at `position`, up to
    // `maxTotalLength` moves in all. The score stays.
    void completeVariant(const Position& position, Variant& variant, int maxTotalLength);

    // Whether the table says that the move into `position` is worth more than a pawn
    // less than the best move of its node so far. `alfa` and `originalAlfa` are the
    // node's bound now and at its start, `maxVariantDepth` the plies to be searched.
    bool lmf(const Position& position, int alfa, int originalAlfa, int maxVariantDepth);

    // ---- Quiescence ----

    // The quiescence search as the tree calls it: leaves score and line in `variant`.
    void quiscenceSearchInner(Position& position, int alfa, int beta, Variant& variant);
    // The same on a cleared table, for a search of quiescence alone.
    void quiscenceSearch(Position& position, int alfa, int beta, Variant& variant);
    // One node, `depth` plies below the entry.
    void quiscenceSearchRek(Position& position, Variant& variant, int alfa, int beta, int depth);

    // ---- Order of moves ----

    // Write to `moveOrderIndices` each index from 0 to `length` - 1 once, in the order
    // in which the moves are to be tried: the first for the tree at ply `depth`, with
    // the table's move as Polyglot code or 0; the second for quiescence.
    void orderMoves(const Move* moves, int* moveOrderIndices, int length, int depth,
                    std::int16_t bestMoveShort) const;
    void orderMoves(const Move* moves, int* moveOrderIndices, int length) const;

    // Counts that a quiet move reached beta at ply `depth`.
    void updateKiller(const Move& move, int depth);
    // The move's place in `killers`. The piece plays no part.
    static int getMoveKillersIndex(const Move& move, int depth);
    // Place in `killers` of the first killer of a ply, at `depth`, or the second, at
    // `depth` + KILLER_PLIES; 0 for none.
    int getActualKiller(int index) const { return actualKillers[at(index)]; }
    void clearKillersTable();

    // ---- Transposition table ----

    // Stores what the move into `position` was worth for the side that made it, with
    // that side's window and the plies that were searched below. Without a first move
    // of the line behind it, the slot keeps the move that it holds.
    void addTableEntry(const Position& position, const Move* firstVariantMove, int maxVariantDepth,
                       int evaluation, int alfa, int beta);
    // If the table holds the exact score of the move into `position`, searched at
    // least so deep: stores it in `evaluation` and returns true.
    bool useTableEntry(const Position& position, int maxVariantDepth, int& evaluation);
    // Empties the table. What it held as moves and check values stays in the slots.
    void clearTable();
    // Brings the table to the size that the configuration asks for. If there is no
    // memory for it, the configuration is told that there is no table.
    void applyChanges();
    HashTable<GenericEntry>& getHashTable() { return hashTable; }

    // ---- Path, counters and the stop flag ----

    // Count a position in or out of the path; the first returns its new count. Both
    // take the position after the move.
    std::uint16_t moveDoneInner(const Position& newPosition);
    void moveUndoneInner(const Position& oldPosition);
    HashTable<RepetitionEntry>& getRepetitionTable() { return repetitionTable; }

    void resetSearchedNodes();
    std::int64_t getSearchedAllNodes() const { return searchedAllNodes; }
    std::int64_t getSearchedTreeNodes() const { return searchedTreeNodes; }

    // Whether the search is to end, as the shared slot tells.
    bool timerUp();
    // Whether the pass was abandoned because of that. True until resetSearchedNodes().
    bool isAbandoned() const { return searchedAllNodesAfterTimeControl == TIME_CHECK_QUIT; }
    // The slot whose ready flag stops the search, null for none. Not owned.
    void setIdaVariant(IdaVariant* _idaVariant) { idaVariant = _idaVariant; }
    // Notes the budget in milliseconds and the time. No rule of the search reads them.
    void setTimer(Milliseconds milliseconds);

    Observer& getObserver() { return observer; }

    // ---- The pass to come, as the driver sets it ----

    void setDefaultFirstAlfaBeta(); // the full window

    int firstAlpha; // the window at the root
    int firstBeta;
    int actualMoveDepth; // depth of the pass in plies
    // The line of the last good pass without its quiescence moves, in stored order.
    // No rule of the search reads it.
    std::vector<VariantMove> mainLineToCheck;

private:
    // How a move got its score.
    struct MoveOutcome {
        bool useTableEntryBool = false; // the table answered for it
        bool lmfCut = false;            // it is passed over without a score
    };

    MoveOutcome scoreMove(Position& position, Variant& variantLocal, int alfa, int originalAlfa,
                          int beta, int depth);
    int scoreQuiscenceMove(Position& position, const Move& move, Variant& localVariant, int alfa,
                           int beta, int depth, bool isInCheckOriginally);
    bool isTimeUpAfterCounting();
    std::int16_t getBestMoveHint(const Position& position);
    int getDrawer(const Move& move, int depth) const;
    void noteUsedSlot(const GenericEntry& entry);

    [[no_unique_address]] Observer observer;
    HashTable<GenericEntry> hashTable;
    // Slots of the table that are not FREE, so that a short search need not walk the
    // whole table. A full list stands for slots anywhere.
    std::vector<int> usedSlots;
    HashTable<RepetitionEntry> repetitionTable; // positions of the game and the path
    EngineConfig* config;                       // not owned
    PolyglotBook book;
    std::array<std::uint32_t, KILLERS_SIZE> killers; // cut-offs by ply and quiet move
    std::array<int, 2 * KILLER_PLIES> actualKillers; // see getActualKiller()
    IdaVariant* idaVariant = nullptr;
    Milliseconds timerMilliseconds = -1; // the budget given to setTimer()
    Milliseconds startClock = 0;         // the clock at setTimer()
    std::int64_t searchedTreeNodes = 0;  // moves played by the tree search
    std::int64_t searchedAllNodes = 0;   // by both searches: the count that is reported
    // The same since the last poll of the stop flag, or TIME_CHECK_QUIT.
    std::int64_t searchedAllNodesAfterTimeControl = 0;
};

// The search that plays, and the same search under somebody's eyes.
using TreeGenerator = BasicTreeGenerator<NoObserver>;
using WatchedTreeGenerator = BasicTreeGenerator<ObservedBy>;

extern template class BasicTreeGenerator<NoObserver>;
extern template class BasicTreeGenerator<ObservedBy>;
