// Where the pieces are, for drawing. The engine knows the rules: moves shown here are legal already.

// 64 characters, a8 first, h1 last; "." is an empty square.
export type Placement = string;

export const FILES = "abcdefgh";

export interface Step {
    from: number; // 0 is a8, 63 is h1
    to: number;
    promotion: string; // "q", "r", "b", "n", or ""
}

export function squareName(square: number): string {
    return FILES[square & 7] + String(8 - (square >> 3));
}

export function squareNumber(name: string): number {
    return FILES.indexOf(name[0]) + 8 * (8 - Number(name[1]));
}

export function placementOf(fen: string): Placement {
    return fen
        .split(" ")[0]
        .replace(/\//g, "")
        .replace(/[1-8]/g, (digits) => ".".repeat(Number(digits)));
}

// A move in long algebraic text, such as "e7e8q".
export function parseStep(text: string): Step {
    return { from: squareNumber(text), to: squareNumber(text.slice(2)), promotion: text.slice(4) };
}

export function stepText(step: Step): string {
    return squareName(step.from) + squareName(step.to) + step.promotion;
}

export function isWhite(piece: string): boolean {
    return piece !== piece.toLowerCase();
}

// The placement after a legal move.
export function afterStep(placement: Placement, step: Step): Placement {
    const squares = [...placement];
    const { from, to } = step;
    const piece = squares[from];
    const isPawn = piece.toLowerCase() === "p";
    if (isPawn && (from & 7) !== (to & 7) && squares[to] === ".") {
        squares[(from & ~7) | (to & 7)] = "."; // en passant
    }
    if (piece.toLowerCase() === "k" && Math.abs(from - to) === 2) {
        const corner = to > from ? from + 3 : from - 4;
        squares[(from + to) / 2] = squares[corner];
        squares[corner] = ".";
    }
    squares[to] = promoted(piece, step.promotion);
    squares[from] = ".";
    return squares.join("");
}

function promoted(piece: string, promotion: string): string {
    if (!promotion) {
        return piece;
    }
    return isWhite(piece) ? promotion.toUpperCase() : promotion;
}

// A short name for a picture's label: "Nf3", "exd5", "O-O". Unlike short notation it does not
// distinguish two pieces of a kind, and has no check.
export function labelOf(placement: Placement, step: Step): string {
    const piece = placement[step.from].toUpperCase();
    if (piece === "K" && Math.abs(step.from - step.to) === 2) {
        return step.to > step.from ? "O-O" : "O-O-O";
    }
    const isPawn = piece === "P";
    const takes = placement[step.to] !== "." || (isPawn && (step.from & 7) !== (step.to & 7));
    const name = isPawn ? (takes ? FILES[step.from & 7] : "") : piece;
    const end = step.promotion ? "=" + step.promotion.toUpperCase() : "";
    return name + (takes ? "x" : "") + squareName(step.to) + end;
}

// Before a line's moves: "12. Nf3 d5 13. c4", "12... d5 13. c4". `ply` counts from 0, White's first move.
export function numbered(sans: readonly string[], ply: number): string {
    return sans
        .map((san, i) => {
            const at = ply + i;
            const number = `${(at >> 1) + 1}`;
            return at % 2 === 0 ? `${number}. ${san}` : i === 0 ? `${number}... ${san}` : san;
        })
        .join(" ");
}

// The ply of a position by its move number and side to move.
export function plyOf(fen: string): number {
    const fields = fen.trim().split(/\s+/);
    const number = Math.max(1, Number(fields[5] ?? 1) || 1);
    return 2 * (number - 1) + (fields[1] === "b" ? 1 : 0);
}
