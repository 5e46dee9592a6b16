// Scores that are a mate, for the tools that tell them.
#pragma once

// Whether a score is a mate, given or suffered.
bool isMate(int score);

// The moves of the side that mates from here to the mate, below 0 if the side that the score
// belongs to is mated, and 0 if the mate is on the board. Requires isMate(score).
int movesToMate(int score);
