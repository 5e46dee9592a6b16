// The score of an engine in a match of pairs: two games from one opening with colours swapped. All
// statistics are of pairs, as the two games of a pair depend on each other.
#pragma once

#include <array>
#include <string>

class MatchScore {
public:
    // A pair in which the engine has won that number of half points, 0 to 4.
    void addPair(int halfPoints) { ++pairs.at(static_cast<std::size_t>(halfPoints)); }

    // Pairs with 0, 0.5, 1, 1.5 and 2 points.
    const std::array<int, 5>& getPairs() const { return pairs; }
    int countPairs() const;
    // The difference to the opponent; infinite without a loss or without a win.
    double getElo() const;
    // Half the width of its 95 % confidence interval.
    double getEloError() const;
    // The logarithm of the likelihood ratio of elo1 to elo0, in the normal approximation.
    double getLlr(double elo0, double elo1) const;

private:
    double getMean() const;     // points per game
    double getVariance() const; // of the points per game of a pair

    std::array<int, 5> pairs{};
};

// The sequential probability ratio test of elo1 against elo0 with error rates of 5 %.
struct Sprt {
    double elo0;
    double elo1;

    // Whether the match has decided it: "H0" accepts elo0, "H1" accepts elo1, "open" neither.
    std::string judge(const MatchScore& score) const;
};
