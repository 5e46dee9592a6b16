#include "support/matchScore.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr double CONFIDENCE = 1.959964;      // standard deviations of a 95 % interval
constexpr double SPRT_BOUND = 2.94443897917; // ln 19

double toElo(double score) {
    return 400 * std::log10(score / (1 - score));
}

double toScore(double elo) {
    return 1 / (1 + std::pow(10, -elo / 400));
}

} // namespace

int MatchScore::countPairs() const {
    return std::accumulate(pairs.begin(), pairs.end(), 0);
}

double MatchScore::getMean() const {
    const int halfPoints = pairs[1] + 2 * pairs[2] + 3 * pairs[3] + 4 * pairs[4];
    return halfPoints / 4.0 / std::max(countPairs(), 1);
}

// Half a pair is added to each outcome, so that a few equal results do not make it 0.
double MatchScore::getVariance() const {
    double sum = 0;
    for (double points = 0; const int count : pairs) {
        sum += (count + 0.5) * std::pow(points - getMean(), 2);
        points += 0.25;
    }
    return sum / (countPairs() + 2.5);
}

double MatchScore::getElo() const {
    return toElo(getMean());
}

double MatchScore::getEloError() const {
    const double error = CONFIDENCE * std::sqrt(getVariance() / std::max(countPairs(), 1));
    const double most = std::min(getMean() + error, 1.0);
    const double least = std::max(getMean() - error, 0.0);
    return (toElo(most) - toElo(least)) / 2;
}

double MatchScore::getLlr(double elo0, double elo1) const {
    const double score0 = toScore(elo0);
    const double score1 = toScore(elo1);
    return countPairs() * (score1 - score0) * (2 * getMean() - score0 - score1) /
           (2 * getVariance());
}

std::string Sprt::judge(const MatchScore& score) const {
    const double llr = score.getLlr(elo0, elo1);
    return llr >= SPRT_BOUND ? "H1" : llr <= -SPRT_BOUND ? "H0" : "open";
}
