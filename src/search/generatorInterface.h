// What searches a position and leaves a line.
#pragma once

struct Position;
struct Variant;

class GeneratorInterface {
public:
    GeneratorInterface() = default;
    GeneratorInterface(const GeneratorInterface&) = delete;
    GeneratorInterface& operator=(const GeneratorInterface&) = delete;

    // Searches `position` to the depth that the configuration gives and leaves the
    // line in `variant`, with its score for the side to move.
    virtual void generateTree(Position& position, Variant& variant) = 0;

    virtual ~GeneratorInterface();
};
