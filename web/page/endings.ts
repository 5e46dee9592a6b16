// How the search of a move ended, in words and colours for the picture of the tree.
import { Ending } from "./searchTree";

export interface EndingGroup {
    color: string; // the name of a CSS variable
    name: string;
}

const SEARCHED = { color: "--tree-searched", name: "searched move by move" };
const TABLE = { color: "--tree-table", name: "known from the table" };
const SKIPPED = { color: "--tree-skipped", name: "skipped as hopeless" };
const QUIET = { color: "--tree-quiet", name: "quiet move, counted at once" };
const FAR = { color: "--tree-far", name: "capture too small to matter" };
const DEEPEST = { color: "--tree-deepest", name: "deepest ply, counted" };
const PAT = { color: "--tree-pat", name: "good enough without a capture" };
const DRAW = { color: "--tree-draw", name: "draw" };
const MATE = { color: "--tree-mate", name: "checkmate" };

export const GROUPS: EndingGroup[] = [
    SEARCHED,
    TABLE,
    SKIPPED,
    QUIET,
    FAR,
    DEEPEST,
    PAT,
    DRAW,
    MATE,
];

const ENDINGS: Record<Ending, [EndingGroup, string]> = {
    [Ending.Searched]: [SEARCHED, "The position after it was searched."],
    [Ending.Repetition]: [DRAW, "The position occurred before: a draw by repetition."],
    [Ending.Table]: [
        TABLE,
        "The table held its score from an earlier search, so it was not searched again.",
    ],
    [Ending.LmfCut]: [SKIPPED, "Skipped: the table puts it more than a pawn below the best move."],
    [Ending.TableLmfCut]: [
        SKIPPED,
        "Skipped: the table puts it more than a pawn below the best move.",
    ],
    [Ending.Quiet]: [
        QUIET,
        "A quiet move after the full depth: the pieces are counted after it, and nothing is searched.",
    ],
    [Ending.DeepestPly]: [DEEPEST, "The deepest ply: the pieces are counted, whatever hangs."],
    [Ending.OutOfReach]: [
        FAR,
        "Even with two pawns added, this capture stays too far below the window.",
    ],
    [Ending.StandPat]: [
        PAT,
        "The side to move need not capture: its position is already good enough.",
    ],
    [Ending.NoQuiscence]: [DEEPEST, "The pieces are counted; captures after it are not searched."],
    [Ending.Clock]: [DRAW, "A draw by the fifty-move rule."],
    [Ending.Checkmate]: [MATE, "Checkmate."],
    [Ending.Stalemate]: [DRAW, "Stalemate: a draw."],
};

export function groupOf(ending: number): number {
    return GROUPS.indexOf(ENDINGS[ending as Ending][0]);
}

export function endingSentence(ending: number): string {
    return ENDINGS[ending as Ending][1];
}
