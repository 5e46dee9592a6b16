// A record of the search in words. All scores are for White.
import { endingSentence } from "./endings";
import { numbered } from "./placement";
import type { SearchTree } from "./searchTree";
import type { TreeMoves } from "./treeMoves";
import { countText, forWhite, toScore } from "./words";

// The window of a record for White: what White has elsewhere, and what Black allows at most.
export interface Window {
    floor: number; // thousandths of a pawn, as in the records
    ceiling: number;
}

export class Describer {
    constructor(
        readonly tree: SearchTree,
        readonly moves: TreeMoves,
        private readonly ply: number,
    ) {}

    window(index: number): Window {
        const { records } = this.tree;
        return this.moves.isWhite(index)
            ? { floor: records.alfa(index), ceiling: records.beta(index) }
            : { floor: -records.beta(index), ceiling: -records.alfa(index) };
    }

    scoreForWhite(index: number): number {
        const score = this.tree.records.score(index);
        return this.moves.isWhite(index) ? score : -score;
    }

    // "5... Qd4".
    name(index: number): string {
        return index < 0
            ? "the position"
            : numbered([this.moves.label(index)], this.ply + this.tree.ply[index]);
    }

    line(index: number): string {
        return numbered(
            this.tree.path(index).map((at) => this.moves.label(at)),
            this.ply,
        );
    }

    // "White has +0.10 elsewhere, Black allows +0.45 at most".
    windowText(index: number): string {
        const { floor, ceiling } = this.window(index);
        const [low, high] = [toScore(floor), toScore(ceiling)];
        const white = low
            ? `White already has ${forWhite(low, true)} elsewhere`
            : "White has nothing yet";
        const black = high
            ? `Black can hold it to ${forWhite(high, true)}`
            : "Black has nothing yet";
        return `${white}; ${black}.`;
    }

    // "+0.31", "at most +0.31" for a bound, "none" for a skipped move.
    scoreText(index: number): string {
        if (this.tree.isSkipped(index)) {
            return "none";
        }
        const value = this.scoreForWhite(index);
        const score = toScore(value);
        if (!score) {
            return "none";
        }
        const text = forWhite(score, true);
        const { floor, ceiling } = this.window(index);
        if ("mate" in score || (value > floor && value < ceiling)) {
            return text;
        }
        return `${value <= floor ? "at most" : "at least"} ${text}`;
    }

    // What became of a move, with the reason.
    verdict(index: number): string {
        const side = this.moves.isWhite(index) ? "White" : "Black";
        const other = this.moves.isWhite(index) ? "Black" : "White";
        if (this.tree.isSkipped(index)) {
            return endingSentence(this.tree.records.ending(index));
        }
        if (this.tree.failedHigh(index)) {
            return `Cut-off: too good for ${side}. ${other} avoids this position, so ${side}'s other moves here were not tried.`;
        }
        if (this.tree.failedLow(index)) {
            const refutation = this.tree.refutation(index);
            const by = refutation === null ? "" : ` Refuted by ${this.name(refutation)}.`;
            return `No better than what ${side} has already.${by}`;
        }
        return `The best move for ${side} so far.`;
    }

    reason(index: number): string {
        const below = this.tree.size[index] - 1;
        const after =
            below > 0
                ? ` ${countText(below)} ${below === 1 ? "move" : "moves"} tried after it.`
                : "";
        return endingSentence(this.tree.records.ending(index)) + after;
    }
}
