// A game from a position, by the plain rules.
#pragma once

#include "support/plainRules.h"
#include "testing/dice.h"

#include <iterator>
#include <map>
#include <string>
#include <vector>

class PlainGame {
public:
    explicit PlainGame(const std::string& fen) : position(fen) {}

    // As UCI writes them.
    const std::vector<std::string>& getMoves() const { return moves; }

    // Plays a move if it is legal. Returns whether it was.
    bool play(const std::string& move) {
        const Choices choices = getChoices();
        const auto choice = choices.find(move);
        return choice != choices.end() && play(choice);
    }

    // Plays a random move; `toAndFro` is the chance in percent that it is the way back of the last
    // one of the same side, if there is one. Returns whether there was a move.
    bool playAny(Dice& dice, int toAndFro) {
        const Choices choices = getChoices();
        if (choices.empty()) {
            return false;
        }
        auto choice = std::next(choices.begin(), dice.below(static_cast<int>(choices.size())));
        if (moves.size() >= 2 && dice.chance(toAndFro)) {
            const std::string& last = moves[moves.size() - 2];
            const auto back = choices.find(last.substr(2, 2) + last.substr(0, 2));
            choice = back != choices.end() ? back : choice;
        }
        return play(choice);
    }

private:
    using Choices =
        std::map<std::string, plain::Position>; // the legal moves, and what they lead to

    Choices getChoices() const {
        Choices choices;
        for (const plain::Move& move : position.moves()) {
            if (const auto after = position.play(move)) {
                choices.insert({move.text(), *after});
            }
        }
        return choices;
    }

    bool play(Choices::const_iterator choice) {
        moves.push_back(choice->first);
        position = choice->second;
        return true;
    }

    plain::Position position;
    std::vector<std::string> moves;
};
