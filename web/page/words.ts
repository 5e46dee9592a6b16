// Scores, counts, reasons and names in words.
import type { Pass, Score, Tag } from "./protocol";

// The same scale as in src/search/score.h: thousandths of a pawn, mates near the ends.
const MATED = -2147483448;
const MATE_LIMIT = 2147483298;

// A score of a record; null for an end of the full window.
export function toScore(value: number): Score | null {
    if (Math.abs(value) > -MATED) {
        return null;
    }
    if (Math.abs(value) <= MATE_LIMIT) {
        return { cp: value / 10 };
    }
    const plies = -MATED - Math.abs(value);
    return { mate: value > 0 ? (plies + 1) >> 1 : -(plies >> 1) };
}

export function negated(score: Score): Score {
    return "cp" in score ? { cp: -score.cp } : { mate: -score.mate };
}

// "+0.31", "mate in 3", "mated in 2".
export function scoreText(score: Score): string {
    if ("mate" in score) {
        return score.mate > 0
            ? `mate in ${score.mate}`
            : score.mate < 0
              ? `mated in ${-score.mate}`
              : "mated";
    }
    const hundredths = Math.round(score.cp) || 0;
    return (hundredths < 0 ? "\u2212" : "+") + (Math.abs(hundredths) / 100).toFixed(2);
}

// A score for the side to move, as one for White: "+0.31", "White mates in 3".
export function forWhite(score: Score, whiteToMove: boolean): string {
    const white = whiteToMove ? score : negated(score);
    if ("cp" in white) {
        return scoreText(white);
    }
    const winner = (white.mate || (whiteToMove ? -1 : 1)) > 0 ? "White" : "Black";
    return white.mate === 0 ? `${winner} has mated` : `${winner} mates in ${Math.abs(white.mate)}`;
}

// Hundredths of a pawn for charts, where mates lie beyond all other scores.
export function chartValue(score: Score): number {
    const limit = 1000;
    if ("mate" in score) {
        return score.mate > 0 ? limit : -limit;
    }
    return Math.max(-limit, Math.min(limit, score.cp));
}

// Its digits in groups of three. toLocaleString() takes a tenth of a second when first called.
export function pliesText(count: number): string {
    return `${count} ${count === 1 ? "ply" : "plies"}`;
}

export function countText(count: number): string {
    return String(Math.round(count)).replace(/\B(?=(\d{3})+$)/g, ",");
}

// "1.3 million", "38,000", for large numbers that change quickly.
export function roughCount(count: number): string {
    if (count >= 1e6) {
        return `${(count / 1e6).toFixed(count >= 1e7 ? 0 : 1)} M`;
    }
    return count >= 1e4 ? `${Math.round(count / 1e3)} k` : countText(count);
}

export function timeText(milliseconds: number): string {
    return milliseconds < 1000
        ? `${Math.round(milliseconds)} ms`
        : `${(milliseconds / 1000).toFixed(1)} s`;
}

// "≤ −0.38" for a failed pass, which knows only a bound.
export function passScore(pass: Pass, whiteToMove: boolean): string {
    const score = forWhite(pass.score, whiteToMove);
    if (pass.outcome === "good") {
        return score;
    }
    const isBelow = (pass.outcome === "failed low") === whiteToMove;
    return `${isBelow ? "\u2264" : "\u2265"} ${score}`;
}

export function sideName(turn: "w" | "b"): string {
    return turn === "w" ? "White" : "Black";
}

export function capitalized(text: string): string {
    return text.charAt(0).toUpperCase() + text.slice(1);
}

// "Anderssen - Kieseritzky, London 1851".
export function gameName(tags: Tag[]): string {
    const tag = (name: string): string => tags.find((at) => at.name === name)?.value ?? "?";
    const event = [tag("Event"), tag("Date")].filter((text) => !text.startsWith("?")).join(" ");
    return `${tag("White")} \u2013 ${tag("Black")}${event ? `, ${event}` : ""}`;
}
