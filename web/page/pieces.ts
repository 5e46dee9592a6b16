// Pictures and names of the pieces. The page's HTML contains the shapes of pieces.svg.
import { svg } from "./dom";
import { isWhite } from "./placement";

const NAMES: Record<string, string> = {
    k: "king",
    q: "queen",
    r: "rook",
    b: "bishop",
    n: "knight",
    p: "pawn",
};

// "white knight"; "empty" for ".".
export function pieceName(piece: string): string {
    return piece === "."
        ? "empty"
        : `${isWhite(piece) ? "white" : "black"} ${NAMES[piece.toLowerCase()]}`;
}

// A piece on the square at this column and row of an SVG board whose squares have size 1.
export function pieceUse(piece: string, column: number, row: number): SVGGElement {
    return svg(
        "g",
        { class: isWhite(piece) ? "white" : "black", transform: `translate(${column} ${row})` },
        svg("use", { href: `#${piece.toUpperCase()}` }),
    );
}

export function pieceFigure(piece: string): SVGSVGElement {
    return svg(
        "svg",
        { viewBox: "0 0 1 1", class: "figure", "aria-hidden": "true" },
        pieceUse(piece, 0, 0),
    );
}
