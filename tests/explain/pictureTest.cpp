// The pictures of the page: each thing is where its value belongs. What only looks
// better or worse, such as the room around it, is left to the eye.

#include "kestran-explain/boardPicture.h"
#include "kestran-explain/passChart.h"
#include "kestran-explain/windowBar.h"
#include "search/score.h"
#include "support/gameInput.h"
#include "testing/regex.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr double HUNDREDTH = 0.01; // to which coordinates are written

std::vector<double> numbersIn(const std::string& text) {
    std::vector<double> numbers;
    for (const TextPattern::Parts& digits : TextPattern(R"(-?\d+(?:\.\d+)?)").findAll(text)) {
        numbers.push_back(std::stod(digits[0]));
    }
    return numbers;
}

// An element of a picture.
struct Shape {
    std::vector<double> numbers; // of its attributes, in their order
    std::string text;
};

// Those of a class, in their order.
std::vector<Shape> shapesOf(const std::string& picture, const std::string& name) {
    std::vector<Shape> shapes;
    const TextPattern element("class=\"" + name + R"re("([^>]*)>([^<]*))re");
    for (const TextPattern::Parts& parts : element.findAll(picture)) {
        shapes.push_back({numbersIn(parts[1]), parts[2]});
    }
    return shapes;
}

// ---- The window of a node ----

constexpr int INFINITE = DEFAULT_FIRST_BETA;

std::string windowOf(int alfa, int score, int beta, MoveEnding ending = MoveEnding::QUIET) {
    NodeMoveInfo info;
    info.ending = ending;
    info.lmfCut = isLmfCut(ending);
    info.alfa = alfa;
    info.beta = beta;
    info.principalVariant.clear(score);
    HtmlWriter html;
    drawWindow(html, info);
    return html.getResult();
}

// The corners of the mark of the score: left, top, right, bottom.
struct Mark {
    explicit Mark(const std::string& picture)
        : corners(shapesOf(picture, "score-mark").at(0).numbers), left(corners.at(0)),
          middle(corners.at(2)), right(corners.at(4)) {}
    std::vector<double> corners;
    double left;
    double middle;
    double right;
};

TEST(Picture, WindowHasItsScoreWhereItLies) {
    struct {
        int alfa;
        int score;
        int beta;
        double place;
    } const cases[] = {
        // Between the bounds, at 50 and 150, in proportion.
        {-1000, 0, 3000, 75},
        {-1000, 2000, 3000, 125},
        // A pawn outside is half of what is left there, three are three quarters.
        {500, 500, 3000, 50},
        {500, -500, 3000, 25},
        {500, -2500, 3000, 12.5},
        {500, 3000, 3000, 150},
        {500, 4000, 3000, 175},
        // The same inside, where a bound is infinite, from the other one.
        {500, 1500, INFINITE, 125},
        {-INFINITE, 2000, 3000, 75},
        {-INFINITE, 1000, INFINITE, 150},
        {-INFINITE, -3000, INFINITE, 25},
        // At the edge there is still room for the mark.
        {500, MATED_EVALUATION, 3000, 5.5},
        {500, -MATED_EVALUATION, 3000, 194.5},
    };
    for (const auto& [alfa, score, beta, place] : cases) {
        const std::string picture = windowOf(alfa, score, beta);
        SCOPED_TRACE(picture);
        const double left = alfa == -INFINITE ? 0 : 50;
        const double right = beta == INFINITE ? 200 : 150;
        const std::vector<double> window = shapesOf(picture, "inside-window").at(0).numbers;
        EXPECT_EQ(window.at(0), left);
        EXPECT_EQ(window.at(2), right - left);
        const Mark mark(picture);
        EXPECT_NEAR(mark.middle, place, HUNDREDTH);
        // The mark is in the middle of the bar.
        EXPECT_EQ(mark.corners.at(1), window.at(1) + window.at(3) / 2);
        EXPECT_EQ(mark.corners.at(3) + mark.corners.at(7), 2 * mark.corners.at(1));
        // The bounds are shown in order, all inside the picture.
        const std::vector<Shape> bounds = shapesOf(picture, "bound");
        EXPECT_LT(bounds.at(0).numbers.at(0), bounds.at(1).numbers.at(0));
        for (const Shape& text : {bounds[0], bounds[1], shapesOf(picture, "score").at(0)}) {
            const double half = 3 * static_cast<double>(text.text.size());
            EXPECT_TRUE(half < text.numbers.at(0) && text.numbers[0] < 200 - half) << text.text;
        }
        EXPECT_NE(picture.find("viewBox=\"0 0 200 36\""), std::string::npos);
    }
}

TEST(Picture, BoundIsAnArrowHeadTowardsTheTrueScore) {
    const Mark atMost(windowOf(500, 0, 3000, MoveEnding::SEARCHED));
    EXPECT_LT(atMost.left, atMost.middle);
    EXPECT_EQ(atMost.right, atMost.middle);
    const Mark atLeast(windowOf(500, 3500, 3000, MoveEnding::SEARCHED));
    EXPECT_EQ(atLeast.left, atLeast.middle);
    EXPECT_GT(atLeast.right, atLeast.middle);
    const Mark exact(windowOf(500, 1000, 3000, MoveEnding::SEARCHED));
    EXPECT_LT(exact.left, exact.middle);
    EXPECT_EQ(exact.left + exact.right, 2 * exact.middle);
    // lmf's moves have no score.
    EXPECT_TRUE(shapesOf(windowOf(500, 0, 3000, MoveEnding::LMF_CUT), "score-mark").empty());
}

// ---- The board ----

struct BoardPicture : testing::Test {
    BoardPicture() {
        HtmlWriter html;
        drawBoard(html, game.position, readMoves(game.position, "O-O Kd7 e4", "the line"), "");
        picture = html.getResult();
    }
    const Game game = readGame({"4k3/8/8/8/8/8/4P3/R3K2R w KQ - 0 1"}, "");
    std::string picture;
};

TEST_F(BoardPicture, HasPiecesOnTheirFields) {
    std::vector<std::string> pieces;
    for (const auto& parts :
         TextPattern(R"re(href="#(.)" class="(\w+)" x="(\d)" y="(\d)")re").findAll(picture)) {
        pieces.push_back(parts[1] + ' ' + parts[2] + ' ' + parts[3] + ' ' + parts[4]);
    }
    std::ranges::sort(pieces);
    EXPECT_EQ(pieces, (std::vector<std::string>{"K black 4 0", "K white 4 7", "P white 4 6",
                                                "R white 0 7", "R white 7 7"}));

    EXPECT_EQ(piecesText(game.position), "White: Ke1 Ra1 Rh1 e2; Black: Ke8");
    EXPECT_NE(picture.find("<use href=\"#squares\"/>"), std::string::npos);

    // Letters below their files, numbers beside their rows.
    const std::vector<Shape> edge = shapesOf(picture, "edge");
    ASSERT_EQ(edge.size(), 16U);
    for (const Shape& shape : edge) {
        const bool isLetter = shape.text[0] >= 'a';
        const double across = shape.numbers.at(isLetter ? 0 : 1);
        const int place = isLetter ? shape.text[0] - 'a' : '8' - shape.text[0];
        EXPECT_TRUE(place < across && across < place + 1) << shape.text;
        EXPECT_TRUE(isLetter ? shape.numbers.at(1) > 8 : shape.numbers.at(0) < 0) << shape.text;
    }
}

// A shape of seven corners, of which the fourth is the head, and the first and the last are those
// of the shaft's end. The last move comes first, so that the first one lies on top.
TEST_F(BoardPicture, HasMovesFromFieldToField) {
    struct Arrow {
        std::string color;
        std::string number;
        double fromX;
        double fromY;
        double toX;
        double toY;
    };
    const std::vector<Arrow> arrows = {{"white", "3", 4.5, 6.5, 4.5, 4.5},
                                       {"black", "2", 4.5, 0.5, 3.5, 1.5},
                                       {"white", "1", 4.5, 7.5, 6.5, 7.5}};
    const TextPattern form(R"re(class="arrow of-(\w+)"><path d="([^"]*)"/>)re"
                           R"re(<circle cx="([^"]*)" cy="([^"]*)"[^>]*><text[^>]*>(\d)<)re");
    const std::vector<TextPattern::Parts> drawn = form.findAll(picture);
    ASSERT_EQ(drawn.size(), arrows.size());
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        const Arrow& arrow = arrows[i];
        SCOPED_TRACE(arrow.number);
        EXPECT_EQ(drawn[i][1], arrow.color);
        EXPECT_EQ(drawn[i][5], arrow.number);
        const std::vector<double> shape = numbersIn(drawn[i][2]);
        ASSERT_EQ(shape.size(), 14U);
        EXPECT_EQ(shape[6], arrow.toX);
        EXPECT_EQ(shape[7], arrow.toY);
        const double length = std::hypot(arrow.toX - arrow.fromX, arrow.toY - arrow.fromY);
        // How far the middle between two points is on the way, on which it lies.
        const auto wayTo = [&](double x, double y, double otherX, double otherY) {
            const double middleX = (x + otherX) / 2;
            const double middleY = (y + otherY) / 2;
            const double way = std::hypot(middleX - arrow.fromX, middleY - arrow.fromY);
            const double rest = std::hypot(arrow.toX - middleX, arrow.toY - middleY);
            EXPECT_NEAR(way + rest, length, HUNDREDTH);
            return way;
        };
        const double start = wayTo(shape[0], shape[1], shape[12], shape[13]);
        const double neck = wayTo(shape[4], shape[5], shape[8], shape[9]);
        const double x = std::stod(drawn[i][3]);
        const double y = std::stod(drawn[i][4]);
        const double badge = wayTo(x, y, x, y);
        EXPECT_NEAR(start, 0.38, HUNDREDTH);
        EXPECT_TRUE(start < badge && badge < neck && neck < length);
    }
}

// ---- The passes ----

PassReport passWith(int score, std::int64_t nodes, IdaNS::GeneratingResult result = IdaNS::OK) {
    PassReport pass{1, result, Variant(), nodes};
    pass.line.clear(score);
    return pass;
}

struct PassPicture : testing::Test {
    PassPicture() {
        const NumberedGame game = readGame({}, "");
        Explain explain;
        explain.setVariant(game.position, Variant());
        HtmlWriter html;
        drawPasses(html, WatchedLine(game, explain, passes));
        picture = html.getResult();
        columns = shapesOf(picture, "column");
        ticks = shapesOf(picture, "scale");
        perPawn = (ticks.at(1).numbers.at(1) - ticks.at(0).numbers.at(1)) /
                  (std::stod(ticks[1].text) - std::stod(ticks[0].text));
        zero = shapesOf(picture, "grid zero").at(0).numbers.at(1);
    }

    double middleOf(std::size_t pass) const {
        return columns.at(pass).numbers.at(0) + columns[pass].numbers.at(2) / 2;
    }

    const std::vector<PassReport> passes = {
        passWith(-600, 10),
        passWith(400, 1000, IdaNS::FAILLOW),
        passWith(1200, 100000),
        passWith(900, 0),
        passWith(-MATED_EVALUATION - 1, 100, IdaNS::OK_FINISH),
        passWith(300, 10, IdaNS::FAILHIGH),
    };
    std::string picture;
    std::vector<Shape> columns;
    std::vector<Shape> ticks;
    double perPawn = 0; // from the first two ticks
    double zero = 0;    // height of that line
};

TEST_F(PassPicture, ScaleIsEven) {
    EXPECT_LT(perPawn, 0); // upwards
    ASSERT_EQ(ticks.size(), 4U);
    for (const Shape& tick : ticks) {
        // The text is beside its line.
        EXPECT_NEAR(tick.numbers.at(1), zero + perPawn * std::stod(tick.text), 5) << tick.text;
    }
    EXPECT_EQ(shapesOf(picture, "grid").size() + 1, ticks.size());
    for (std::size_t pass = 1; pass < columns.size(); ++pass) {
        const double step = middleOf(pass) - middleOf(pass - 1);
        EXPECT_NEAR(step, middleOf(1) - middleOf(0), 3 * HUNDREDTH);
        EXPECT_GT(step, columns[pass].numbers[2]); // columns do not touch
    }
    const std::vector<Shape> names = shapesOf(picture, "passes");
    for (std::size_t pass = 0; pass < columns.size(); ++pass) {
        EXPECT_EQ(names.at(pass).text, std::to_string(pass));
        EXPECT_NEAR(names[pass].numbers.at(0), middleOf(pass), 2 * HUNDREDTH);
    }
}

TEST_F(PassPicture, GoodPassesStandAtTheirScores) {
    const std::vector<Shape> good = shapesOf(picture, "good");
    const std::vector<double> joined = shapesOf(picture, "scores").at(0).numbers;
    ASSERT_EQ(good.size(), 4U);
    ASSERT_EQ(joined.size(), 2 * good.size());
    const std::size_t pass[] = {0, 2, 3, 4};
    const double pawns[] = {-0.6, 1.2, 0.9};
    for (std::size_t i = 0; i < good.size(); ++i) {
        EXPECT_NEAR(good[i].numbers.at(0), middleOf(pass[i]), 2 * HUNDREDTH);
        EXPECT_EQ(joined[2 * i], good[i].numbers[0]);
        EXPECT_EQ(joined[2 * i + 1], good[i].numbers.at(1));
        if (i < std::size(pawns)) {
            EXPECT_NEAR(good[i].numbers[1], zero + perPawn * pawns[i], 1);
        }
    }
    EXPECT_LT(good[0].numbers[1],
              columns[0].numbers.at(1) + columns[0].numbers.at(3)); // the ground
    // A mate is at the edge, with its text.
    EXPECT_LT(good[3].numbers[1], zero + perPawn * 1.2 - 1);
    const std::vector<Shape> names = shapesOf(picture, "passes");
    EXPECT_EQ(std::ranges::count(names, "#1", &Shape::text), 1);
}

// Two corners at the bound, then the tip.
TEST_F(PassPicture, FailedPassesPointToTheTrueScore) {
    const std::vector<Shape> failed = shapesOf(picture, "failed");
    ASSERT_EQ(failed.size(), 2U);
    const auto expectAt = [&](const Shape& shape, std::size_t pass, double pawns, bool isDown) {
        const std::vector<double>& corners = shape.numbers;
        EXPECT_NEAR(corners.at(4), middleOf(pass), 2 * HUNDREDTH);
        EXPECT_NEAR(corners.at(0) + corners.at(2), 2 * corners[4], 2 * HUNDREDTH);
        EXPECT_LT(corners[0], corners[2]);
        EXPECT_EQ(corners.at(1), corners.at(3));
        EXPECT_NEAR(corners[1], zero + perPawn * pawns, 1);
        EXPECT_EQ(corners.at(5) > corners[1], isDown);
    };
    expectAt(failed[0], 1, 0.4, true);
    expectAt(failed[1], 5, 0.3, false);
}

TEST_F(PassPicture, ColumnsGrowWithThePowersOfTen) {
    const std::vector<Shape> powers = shapesOf(picture, "scale nodes");
    ASSERT_EQ(powers.size(), 7U);
    const char* const texts[] = {"1", "10", "100", "1k", "10k", "100k", "1M"};
    const double ground = powers[0].numbers.at(1);
    const double perPower = ground - powers[1].numbers.at(1);
    for (std::size_t power = 0; power < powers.size(); ++power) {
        EXPECT_EQ(powers[power].text, texts[power]);
        EXPECT_NEAR(ground - powers[power].numbers.at(1), perPower * static_cast<double>(power),
                    10 * HUNDREDTH);
    }
    const double nodes[] = {1, 3, 5, 0, 2, 1}; // powers of ten
    for (std::size_t pass = 0; pass < columns.size(); ++pass) {
        const double height = columns[pass].numbers.at(3);
        EXPECT_NEAR(height, perPower * nodes[pass], 0.5);
        EXPECT_NEAR(columns[pass].numbers.at(1) + height, ground, 5); // the text is lower
    }
}

} // namespace
