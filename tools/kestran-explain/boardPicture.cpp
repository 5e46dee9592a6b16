#include "kestran-explain/boardPicture.h"

#include "kestran-explain/svgPath.h"
#include "notation/letters.h"

#include <cmath>

namespace {

// Lengths in squares.
constexpr double MARGIN = 0.5; // for the letters and numbers at the edge
constexpr double ARROW_START = 0.38;
constexpr double HEAD_LENGTH = 0.42;
constexpr double HEAD_HALF = 0.24;
constexpr double SHAFT_HALF = 0.08;
constexpr double BADGE_RADIUS = 0.2;
constexpr double NUMBER_DROP = 0.11; // from the middle of a text to its base line

Point centreOf(FieldIndex field) {
    return {fileOf(field) + 0.5, EDGE - 0.5 - rowOf(field)};
}

// The point that lies so far along, and so far to the side of, the way from `a` to `b`.
Point along(Point a, Point b, double forward, double aside) {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const double dx = (b.x - a.x) / length;
    const double dy = (b.y - a.y) / length;
    return {a.x + dx * forward - dy * aside, a.y + dy * forward + dx * aside};
}

void drawArrow(HtmlWriter& html, const Move& move, bool isWhite, int number) {
    const Point from = centreOf(move.isCastle() ? move.getCastlingFields().kingFrom : move.from);
    const Point to = centreOf(move.isCastle() ? move.getCastlingFields().kingTo : move.to);
    const double neck = std::hypot(to.x - from.x, to.y - from.y) - HEAD_LENGTH;
    const auto corner = [&](double forward, double aside) {
        return along(from, to, forward, aside);
    };
    const std::string path = shapePath({corner(ARROW_START, -SHAFT_HALF), corner(neck, -SHAFT_HALF),
                                        corner(neck, -HEAD_HALF), to, corner(neck, HEAD_HALF),
                                        corner(neck, SHAFT_HALF), corner(ARROW_START, SHAFT_HALF)});
    const auto arrow = html.open("g", {{"class", isWhite ? "arrow of-white" : "arrow of-black"}});
    html.addEmpty("path", {{"d", path}});
    // Near the start: arrows that end on one field do not cover each other's numbers.
    const Point badge = along(from, to, ARROW_START + BADGE_RADIUS / 2, 0);
    html.addEmpty("circle", {{"cx", coordinate(badge.x)},
                             {"cy", coordinate(badge.y)},
                             {"r", coordinate(BADGE_RADIUS)}});
    html.add("text", {{"x", coordinate(badge.x)}, {"y", coordinate(badge.y + NUMBER_DROP)}},
             std::to_string(number));
}

void drawEdge(HtmlWriter& html) {
    for (int i = 0; i < EDGE; ++i) {
        const std::string middle = coordinate(i + 0.5 + NUMBER_DROP);
        html.add("text",
                 {{"class", "edge"}, {"x", coordinate(i + 0.5)}, {"y", coordinate(EDGE + 0.36)}},
                 std::string(1, fileNamesLower[at(i)]));
        html.add("text", {{"class", "edge"}, {"x", coordinate(-MARGIN / 2)}, {"y", middle}},
                 std::string(1, rowNames[at(EDGE - 1 - i)]));
    }
}

void drawPieces(HtmlWriter& html, const Position& position) {
    for (const FieldIndex field : BOARD_FIELDS) {
        const auto [color, type, entry] = position.board[field];
        if (color <= BLACK) {
            html.addEmpty("use", {{"href", std::string{'#', pieceNameCharsUpper[at(type)]}},
                                  {"class", color == WHITE ? "white" : "black"},
                                  {"x", std::to_string(fileOf(field))},
                                  {"y", std::to_string(EDGE - 1 - rowOf(field))}});
        }
    }
}

} // namespace

std::string piecesText(const Position& position) {
    std::string text;
    for (const Color color : COLORS) {
        text += color == WHITE ? "White:" : "; Black:";
        for (const PieceType type : {KING, QUEEN, ROOK, BISHOP, KNIGHT, PAWN}) {
            for (const FieldIndex field : BOARD_FIELDS) {
                const Field& content = position.board[field];
                if (content.color == color && content.pieceType == type) {
                    text += ' ';
                    text += type == PAWN ? "" : std::string(1, pieceNameCharsUpper[at(type)]);
                    text += fieldToString(field, true);
                }
            }
        }
    }
    return text;
}

void drawBoard(HtmlWriter& html, const Position& position, std::span<const Move> line,
               const std::string& text) {
    const std::string box =
        coordinate(-MARGIN) + " 0 " + coordinate(EDGE + MARGIN) + ' ' + coordinate(EDGE + MARGIN);
    const auto board = html.open(
        "svg", {{"class", "board"}, {"viewBox", box}, {"role", "img"}, {"aria-label", text}});
    html.addEmpty("use", {{"href", "#squares"}});
    drawEdge(html);
    drawPieces(html, position);
    // The first move on top.
    for (std::size_t i = line.size(); i-- > 0;) {
        const bool isWhite = (i % 2 == 0) == (position.colorToMove == WHITE);
        drawArrow(html, line[i], isWhite, static_cast<int>(i) + 1);
    }
}
