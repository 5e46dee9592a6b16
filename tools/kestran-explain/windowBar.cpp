#include "kestran-explain/windowBar.h"

#include "explain/searchText.h"
#include "kestran-explain/svgPath.h"
#include "search/score.h"

#include <algorithm>
#include <cmath>

namespace {

// The picture, in its own units.
constexpr double PICTURE_WIDTH = 200;
constexpr double PICTURE_HEIGHT = 36;
constexpr double BAR_TOP = 13;
constexpr double BAR_HEIGHT = 9;
constexpr double MARK_HALF = 5.5;
constexpr double SCORE_BASE = 9;    // base line of the text above the bar
constexpr double BOUND_BASE = 33;   // and of those below it
constexpr double LETTER_HALF = 3.3; // half the width of a letter of a wide font
// The places of the bounds, unless they are infinite.
constexpr double ALFA_PLACE = 50;
constexpr double BETA_PLACE = PICTURE_WIDTH - ALFA_PLACE;
// A distance that fills half of what is left beyond a bound, in thousandths of a pawn.
constexpr double HALF_DISTANCE = 1000;

// From 0 to 1, for distances from 0 to ever more.
double squash(double distance) {
    return distance / (distance + HALF_DISTANCE);
}

// The places of alfa, beta and the score, from the left.
struct Places {
    double alfa;
    double beta;
    double score;
};

Places placesOf(const NodeMoveInfo& info) {
    const double alfa = info.alfa;
    const double beta = info.beta;
    const double score = info.principalVariant.evaluation;
    Places places = {isBeyondMates(info.alfa) ? 0 : ALFA_PLACE,
                     isBeyondMates(info.beta) ? PICTURE_WIDTH : BETA_PLACE, 0};
    const double width = places.beta - places.alfa;
    if (score <= alfa) {
        places.score = places.alfa * (1 - squash(alfa - score));
    } else if (score >= beta) {
        places.score = places.beta + (PICTURE_WIDTH - places.beta) * squash(score - beta);
    } else if (!isBeyondMates(info.alfa) && !isBeyondMates(info.beta)) {
        places.score = places.alfa + width * (score - alfa) / (beta - alfa);
    } else if (!isBeyondMates(info.alfa)) {
        places.score = places.alfa + width * squash(score - alfa);
    } else if (!isBeyondMates(info.beta)) {
        places.score = places.beta - width * squash(beta - score);
    } else {
        places.score = PICTURE_WIDTH / 2 * (1 + std::copysign(squash(std::abs(score)), score));
    }
    return places;
}

// An arrow head towards the scores that the true one may have, or a diamond.
std::string markPath(const NodeMoveInfo& info, double x) {
    const double middle = BAR_TOP + BAR_HEIGHT / 2;
    const bool isLow = verdictOf(info) == Verdict::FAILED_LOW;
    const bool isAtLeast = isBound(info) && !isLow;
    const bool isAtMost = isBound(info) && isLow;
    return shapePath({{x - (isAtLeast ? 0 : MARK_HALF), middle},
                      {x, middle - MARK_HALF},
                      {x + (isAtMost ? 0 : MARK_HALF), middle},
                      {x, middle + MARK_HALF}});
}

// A text with its middle at `x`, or as near as the edges of the picture allow.
void addText(HtmlWriter& html, const char* name, double x, double y, const std::string& text) {
    const double half = LETTER_HALF * static_cast<double>(text.size() + 1);
    html.add("text",
             {{"class", name},
              {"x", coordinate(std::clamp(x, half, PICTURE_WIDTH - half))},
              {"y", coordinate(y)}},
             text);
}

} // namespace

void drawWindow(HtmlWriter& html, const NodeMoveInfo& info) {
    const Places places = placesOf(info);
    const std::string window = "window " + scoreText(info.alfa) + " to " + scoreText(info.beta);
    const std::string box = "0 0 " + coordinate(PICTURE_WIDTH) + ' ' + coordinate(PICTURE_HEIGHT);
    const auto bar = html.open(
        "svg", {{"class", "window"},
                {"viewBox", box},
                {"role", "img"},
                {"aria-label", window + (info.lmfCut ? "" : ", score " + scoreText(info))}});
    const auto addBar = [&](const char* name, double from, double to) {
        html.addEmpty("rect", {{"class", name},
                               {"x", coordinate(from)},
                               {"y", coordinate(BAR_TOP)},
                               {"width", coordinate(to - from)},
                               {"height", coordinate(BAR_HEIGHT)}});
    };
    addBar("outside", 0, PICTURE_WIDTH);
    addBar("inside-window", places.alfa, places.beta);
    addText(html, "bound", places.alfa, BOUND_BASE, scoreText(info.alfa));
    addText(html, "bound", places.beta, BOUND_BASE, scoreText(info.beta));
    if (!info.lmfCut) {
        const double x = std::clamp(places.score, MARK_HALF, PICTURE_WIDTH - MARK_HALF);
        html.addEmpty("path", {{"class", "score-mark"}, {"d", markPath(info, x)}});
        addText(html, "score", x, SCORE_BASE, scoreText(info));
    }
}
