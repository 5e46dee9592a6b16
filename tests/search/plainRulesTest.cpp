// Making moves against the plain twin of the rules: all sequences of some moves from made
// positions, and every part of the position compared after each move.

#include "board/attacks.h"
#include "board/positionCheck.h"
#include "board/pseudoLegalMoves.h"
#include "search/caseMaker.h"
#include "search/evaluation.h"
#include "testing/boardSupport.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <set>
#include <string_view>

namespace {

#ifdef KESTRAN_SLOW_BUILD
constexpr std::size_t POSITIONS = 10;
#else
constexpr std::size_t POSITIONS = 150;
#endif
constexpr int DEPTH = 3;
// Positions with no more sequences than this are searched one move deeper.
constexpr std::int64_t FEW_SEQUENCES = 3000;

// Walks through the moves of both; the first difference ends it.
class TwinWalk {
public:
    // What differs, or an empty text.
    std::string walk(const std::string& fen, int depth) {
        Position position;
        setFenNotation(position, fen);
        fault.clear();
        walk(position, plain::Position(fen), 0, depth);
        return fault;
    }

    std::int64_t sequences = 0; // of full depth, so far
    std::int64_t compared = 0;  // positions

private:
    // `castlings` is White's castlings less Black's on the way here.
    void walk(Position& position, const plain::Position& twin, int castlings, int depth) {
        compare(position, twin, castlings);
        if (depth == 0) {
            ++sequences;
            return;
        }
        note(position, findInconsistency(position).empty(), "consistency");
        const std::string fen = getFen(position);
        const std::string identity = twin.identity();
        note(position, fen.starts_with(identity.substr(0, identity.rfind(' '))), "text");
        const std::vector<plain::Move> expected = twin.moves();
        MoveArray moves;
        const int count = generateMoves(position, moves);
        note(position, count == static_cast<int>(expected.size()), "number of moves");
        note(position, PseudoLegalMoves(position).getCount() == count, "count of the moves");
        bool hasMove = false;
        for (int i = 0; i < count && fault.empty(); ++i) {
            const Move& move = moves[i];
            const plain::Move& twinMove = expected[at(i)];
            note(position, isSame(move, twinMove), "move " + twinMove.text());
            const std::optional<plain::Position> after = twin.play(twinMove);
            DoMoveContext context;
            const bool isLegal = doMove(position, move, context);
            note(position, isLegal == after.has_value(), "legality of " + twinMove.text());
            hasMove = hasMove || isLegal;
            if (isLegal && after) {
                const int castled = !move.isCastle() ? 0 : twin.side == plain::WHITE ? 1 : -1;
                walk(position, *after, castlings + castled, depth - 1);
                undoMove(position, move, context);
            }
        }
        compare(position, twin, castlings); // all moves have been taken back
        note(position, isInMate(position) == (!hasMove && twin.isInCheck()), "mate");
    }

    static bool isSame(const Move& move, const plain::Move& twin) {
        return move.castle_ep_flag == twin.flag &&
               (move.isCastle() ||
                (move.from == twin.from && move.to == twin.to && move.pieceMoved == twin.piece &&
                 move.pieceCaptured == twin.captured && move.promotionPieceType == twin.promotion));
    }

    void compare(const Position& position, const plain::Position& twin, int castlings) {
        comparePieces(position, twin);
        const IncrementalState& incremental = position.incremental;
        note(position, position.colorToMove == twin.side, "side to move");
        note(position, incremental.epField == (twin.passed == 0 ? int{NO_FIELD} : twin.passed),
             "en passant field");
        for (int right = 0; right < CASTLES; ++right) {
            note(position, incremental.castles[right] == twin.castles[at(right)],
                 "right to castle");
        }
        note(position, incremental.halfMoveClock == twin.clock, "clock");
        note(position, incremental.moveEvaluation == 10 * castlings, "castlings counted");
        note(position, incremental.hash == keyOf(twin), "key");
        note(position, basicPositionEvaluationByMaterial(position) == materialOf(twin), "material");
        note(position, positionalEval(position, 0) == positionalOf(twin), "score");
        note(position, isInCheck(position) == twin.isInCheck(), "check");
        ++compared;
    }

    // The mailbox, the list, and the sets.
    void comparePieces(const Position& position, const plain::Position& twin) {
        EntrySet entries = 0;
        EntrySet pawns = 0;
        ByColor<FieldSet> ofColor = {};
        ByType<FieldSet> ofType = {};
        ByColor<int> material = {};
        for (int i = 0; i < LIST_ENTRIES; ++i) {
            const plain::Piece& piece = twin.pieces[at(i)];
            const Color color = i < PIECES_PER_SIDE ? WHITE : BLACK;
            const auto type = static_cast<PieceType>(piece.type);
            note(position, position.pieces[i].pieceType == type, "list");
            if (type == NO_PIECE) {
                continue;
            }
            const auto field = static_cast<FieldIndex>(piece.field);
            note(position, position.pieces[i].boardPosition == field, "field of a piece");
            const auto& [mailColor, mailType, entry] = position.board[field];
            note(position, mailColor == color && mailType == type && entry == i, "mailbox");
            entries |= entrySetOf(i);
            pawns |= type == PAWN ? entrySetOf(i) : 0;
            ofColor[color] |= setOf(field);
            ofType[type] |= setOf(field);
            material[color] += plain::VALUES[at(piece.type)];
        }
        for (const FieldIndex field : BOARD_FIELDS) {
            note(position, (position.board[field].color == EMPTY) == (twin.board[at(field)] == -1),
                 "empty field");
        }
        note(position, position.entries == entries && position.pawnEntries == pawns, "entries");
        note(position, position.ofColor.elements == ofColor.elements, "sets of colours");
        for (int type = PAWN; type <= KING; ++type) {
            const auto kind = static_cast<PieceType>(type);
            note(position, position.ofType[kind] == ofType[kind], "sets of kinds");
        }
        note(position, position.incremental.material.elements == material.elements,
             "worth of pieces");
    }

    void note(const Position& position, bool isAlike, std::string_view what) {
        if (!isAlike && fault.empty()) {
            fault = std::string(what) + " in " + getFen(position);
        }
    }

    std::string fault;
};

// En passant captures that become possible, expire, or are pinned, and positions of all kinds.
TEST(PlainRules, HaveTheSamePositionsAfterTheMovesOfKnownPositions) {
    TwinWalk walk;
    for (const char* fen :
         {"4k3/2p1p3/8/1P1P1P2/2p1p3/8/1P1P4/4K3 w - - 3 1",
          "r3k2r/8/8/8/1p4p1/8/P6P/R3K2R w KQkq - 0 1", "4k3/3p4/8/1KP4r/8/8/8/8 b - - 0 1"}) {
        EXPECT_EQ(walk.walk(fen, DEPTH), "");
    }
    for (const PerftLine& line : readPerftLines()) {
        EXPECT_EQ(walk.walk(line.fen, 1), "");
    }
}

// KESTRAN_TWIN_POSITIONS=6000 takes some minutes; see docs/reliability.md.
TEST(PlainRules, HaveTheSamePositionsAfterAllMoves) {
    const char* wish = std::getenv("KESTRAN_TWIN_POSITIONS");
    const std::size_t wanted = wish == nullptr ? POSITIONS : std::strtoul(wish, nullptr, 10);
    TwinWalk walk;
    std::set<std::string> fens;
    std::int64_t deeper = 0;
    for (unsigned seed = 0; fens.size() < wanted; ++seed) {
        const SearchCase made = CaseMaker(seed).make();
        Position position;
        setFenNotation(position, made.fen);
        for (const std::string& move : made.moves) {
            play(position, move);
        }
        const std::string fen = getFen(position);
        if (!fens.insert(fen).second) {
            continue;
        }
        const std::int64_t before = walk.sequences;
        ASSERT_EQ(walk.walk(fen, DEPTH), "") << "seed " << seed << ": " << fen;
        if (walk.sequences - before <= FEW_SEQUENCES) {
            ASSERT_EQ(walk.walk(fen, DEPTH + 1), "") << "seed " << seed << ": " << fen;
            ++deeper;
        }
    }
    EXPECT_GT(deeper, 0);
    std::cout << fens.size() << " positions, " << deeper << " of them to depth " << DEPTH + 1
              << "; " << walk.sequences << " sequences, " << walk.compared << " comparisons\n";
}

} // namespace
