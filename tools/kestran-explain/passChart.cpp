#include "kestran-explain/passChart.h"

#include "explain/searchText.h"
#include "kestran-explain/svgPath.h"
#include "search/score.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// The picture, in its own units, and the frame of the values.
constexpr double WIDTH = 640;
constexpr double HEIGHT = 260;
constexpr double LEFT = 74;
constexpr double RIGHT = WIDTH - 52;
constexpr double TOP = 26;
constexpr double BOTTOM = HEIGHT - 42;
constexpr double LABEL_GAP = 8;
constexpr double TEXT_DROP = 4; // from the middle of a text to its base line
constexpr double MARK = 5;      // half the size of a mark
constexpr double COLUMN_PART = 0.46;
constexpr int MAX_TICKS = 5;
constexpr double PAWN_SCORE = 1000;

// The step from one line of the grid to the next: 1, 2 or 5 times a power of ten.
double stepFor(double span) {
    double step = std::pow(10, std::floor(std::log10(span / MAX_TICKS)));
    for (const double factor : {2.0, 2.5, 2.0}) {
        if (span / step > MAX_TICKS) {
            step *= factor;
        }
    }
    return step;
}

// A power of ten, such as 100 or 10M.
std::string powerText(int power) {
    constexpr std::array<const char*, 3> DIGITS = {"1", "10", "100"};
    constexpr std::array<const char*, 7> UNITS = {"", "k", "M", "G", "T", "P", "E"};
    return std::string(DIGITS[at(power % 3)]) + UNITS[at(power / 3)];
}

class PassChart {
public:
    PassChart(HtmlWriter& _html, const WatchedLine& _line);

    void draw();

private:
    void findRange();
    double placeOf(int pass) const;
    double heightOf(int score) const;
    void drawGrid();
    void drawColumns();
    void drawScores();
    void addText(const char* name, double x, double y, const std::string& text);

    HtmlWriter& html;
    const WatchedLine& line;
    double least = 0; // score at the bottom, in pawns
    double most = 0;  // and at the top
};

PassChart::PassChart(HtmlWriter& _html, const WatchedLine& _line) : html(_html), line(_line) {
    findRange();
}

// Mates are drawn at the edge and ignored here.
void PassChart::findRange() {
    bool isFirst = true;
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        const int score = line.getPass(pass).line.evaluation;
        const double pawns = isMate(score) ? 0 : score / PAWN_SCORE;
        least = isFirst ? pawns : std::min(least, pawns);
        most = isFirst ? pawns : std::max(most, pawns);
        isFirst = false;
    }
    constexpr double LEAST_SPAN = 0.2;
    const double room = std::max(most - least, LEAST_SPAN) * 0.15;
    least -= room;
    most += room;
}

double PassChart::placeOf(int pass) const {
    return LEFT + (RIGHT - LEFT) * (pass + 0.5) / line.getPassCount();
}

double PassChart::heightOf(int score) const {
    if (isMate(score)) {
        return score > 0 ? TOP : BOTTOM;
    }
    return BOTTOM - (BOTTOM - TOP) * (score / PAWN_SCORE - least) / (most - least);
}

void PassChart::draw() {
    const std::string box = "0 0 " + coordinate(WIDTH) + ' ' + coordinate(HEIGHT);
    const auto chart = html.open("svg", {{"class", "chart"},
                                         {"viewBox", box},
                                         {"role", "img"},
                                         {"aria-label", "Score and nodes of each pass; the table "
                                                        "below has the numbers"}});
    drawColumns();
    drawGrid();
    drawScores();
    addText("key", LEFT, TOP - 12, "score, in pawns" + sideText(line.getPosition(0)));
    addText("key nodes", RIGHT, TOP - 12, "nodes");
}

void PassChart::drawGrid() {
    const double step = stepFor(most - least);
    for (double pawns = std::ceil(least / step) * step; pawns <= most; pawns += step) {
        const int score = static_cast<int>(std::lround(pawns * PAWN_SCORE));
        const double y = heightOf(score);
        html.addEmpty("path", {{"class", score == 0 ? "grid zero" : "grid"},
                               {"d", linePath({{LEFT, y}, {RIGHT, y}})}});
        addText("scale", LEFT - LABEL_GAP, y + TEXT_DROP, scoreText(score));
    }
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        addText("passes", placeOf(pass), BOTTOM + 18, std::to_string(pass));
    }
    addText("passes", (LEFT + RIGHT) / 2, BOTTOM + 36, "pass");
}

// The nodes grow from pass to pass by a factor, so the scale is logarithmic.
void PassChart::drawColumns() {
    double powers = 1;
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        const auto nodes = static_cast<double>(line.getPass(pass).nodes);
        powers = std::max(powers, std::ceil(std::log10(nodes + 1)));
    }
    const auto heightOfNodes = [&](double nodes) {
        return (BOTTOM - TOP) * std::log10(std::max(nodes, 1.0)) / powers;
    };
    const double width = (RIGHT - LEFT) / line.getPassCount() * COLUMN_PART;
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        const double height = heightOfNodes(static_cast<double>(line.getPass(pass).nodes));
        html.addEmpty("rect", {{"class", "column"},
                               {"x", coordinate(placeOf(pass) - width / 2)},
                               {"y", coordinate(BOTTOM - height)},
                               {"width", coordinate(width)},
                               {"height", coordinate(height)}});
    }
    for (int power = 0; power <= static_cast<int>(powers); ++power) {
        const double y = BOTTOM - heightOfNodes(std::pow(10, power));
        addText("scale nodes", RIGHT + LABEL_GAP, y + TEXT_DROP, powerText(power));
    }
}

// Good passes are joined by a line; one that failed is an arrow head towards the true score.
void PassChart::drawScores() {
    std::vector<Point> points;
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        if (isGood(line.getPass(pass))) {
            points.push_back({placeOf(pass), heightOf(line.getPass(pass).line.evaluation)});
        }
    }
    html.addEmpty("path", {{"class", "scores"}, {"d", linePath(points)}});
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        const PassReport& report = line.getPass(pass);
        const double x = placeOf(pass);
        const double y = heightOf(report.line.evaluation);
        if (isGood(report)) {
            html.addEmpty("circle", {{"class", "good"},
                                     {"cx", coordinate(x)},
                                     {"cy", coordinate(y)},
                                     {"r", coordinate(MARK)}});
        } else {
            const double tip = report.result == IdaNS::FAILLOW ? y + 2 * MARK : y - 2 * MARK;
            const std::string path = shapePath({{x - MARK, y}, {x + MARK, y}, {x, tip}});
            html.addEmpty("path", {{"class", "failed"}, {"d", path}});
        }
        if (isMate(report.line.evaluation)) {
            addText("passes", x, y > TOP ? y - LABEL_GAP : y + 2.5 * LABEL_GAP,
                    scoreText(report.line.evaluation));
        }
    }
}

void PassChart::addText(const char* name, double x, double y, const std::string& text) {
    html.add("text", {{"class", name}, {"x", coordinate(x)}, {"y", coordinate(y)}}, text);
}

} // namespace

void drawPasses(HtmlWriter& html, const WatchedLine& line) {
    PassChart(html, line).draw();
}
