// The quiescence search: settles captures, promotions and checks below the tree.
// Its routines are members of TreeGenerator; here stands the rule that they follow.
#pragma once

struct Move;
struct Position;

// Whether the quiescence search follows `moveToTarget` further, which has led to
// `targetPosition`: it gives check, captures or promotes.
bool isMoveInteresting(Position& targetPosition, const Move& moveToTarget);
