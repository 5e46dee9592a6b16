// The picture of a position: squares, pieces, marks and arrows.
import { svg } from "./dom";
import { pieceUse } from "./pieces";
import { FILES, isWhite, Placement, Step } from "./placement";

export interface Arrow {
    from: number;
    to: number;
    kind: "line" | "choice" | "refutation" | "played";
    label?: string; // one or two characters at its start
}

export interface View {
    placement: Placement;
    lastMove?: Step;
    check?: number; // the square of a king in check
    arrows?: Arrow[];
    selected?: number;
    targets?: number[]; // where the selected piece can go
}

export class BoardPicture {
    readonly element = svg("svg", {
        viewBox: "0 0 8 8",
        "aria-hidden": "true",
        focusable: "false",
        class: "picture",
    });
    flipped = false;
    private view: View = { placement: ".".repeat(64) };

    show(view: View): void {
        this.view = view;
        this.draw();
    }

    // Column and row of a square as seen.
    place(square: number): [number, number] {
        const place = this.flipped ? 63 - square : square;
        return [place & 7, place >> 3];
    }

    private draw(): void {
        const parts: SVGElement[] = [svg("use", { href: "#squares" })];
        for (const [square, kind] of this.marks()) {
            const [x, y] = this.place(square);
            parts.push(svg("rect", { x, y, width: 1, height: 1, class: `on-${kind}` }));
        }
        parts.push(...this.coordinates());
        [...this.view.placement].forEach((piece, square) => {
            if (piece !== ".") {
                const shape = pieceUse(piece, ...this.place(square));
                shape.dataset.piece = String(square);
                parts.push(shape);
            }
        });
        parts.push(
            ...this.targets(),
            ...[...(this.view.arrows ?? [])].reverse().map((arrow) => this.arrow(arrow)),
        );
        this.element.replaceChildren(...parts);
    }

    private marks(): Array<[number, string]> {
        const { lastMove, check, selected } = this.view;
        const marks: Array<[number, string]> = lastMove
            ? [
                  [lastMove.from, "last"],
                  [lastMove.to, "last"],
              ]
            : [];
        if (check !== undefined) {
            marks.push([check, "check"]);
        }
        if (selected !== undefined) {
            marks.push([selected, "selected"]);
        }
        return marks;
    }

    private coordinates(): SVGElement[] {
        const texts: SVGElement[] = [];
        for (let i = 0; i < 8; ++i) {
            const shade = (dark: boolean): string =>
                `coordinate ${dark ? "over-dark" : "over-light"}`;
            const file = FILES[this.flipped ? 7 - i : i];
            const rank = String(this.flipped ? i + 1 : 8 - i);
            texts.push(
                svg("text", { x: i + 0.95, y: 7.94, class: `${shade(i % 2 === 0)} file` }, file),
            );
            texts.push(svg("text", { x: 0.05, y: i + 0.22, class: shade(i % 2 === 1) }, rank));
        }
        return texts;
    }

    private targets(): SVGElement[] {
        return (this.view.targets ?? []).map((square) => {
            const [x, y] = this.place(square);
            const occupied = this.view.placement[square] !== ".";
            return svg("circle", {
                cx: x + 0.5,
                cy: y + 0.5,
                r: occupied ? 0.44 : 0.14,
                class: occupied ? "target taken" : "target",
            });
        });
    }

    private arrow(arrow: Arrow): SVGElement {
        const [fromX, fromY] = this.place(arrow.from).map((at) => at + 0.5);
        const [toX, toY] = this.place(arrow.to).map((at) => at + 0.5);
        const length = Math.hypot(toX - fromX, toY - fromY);
        const angle = (Math.atan2(toY - fromY, toX - fromX) * 180) / Math.PI;
        const shaft = length - 0.42;
        const path = `M.2-.07H${shaft}V-.2L${length - 0.08} 0 ${shaft} .2V.07H.2z`;
        const group = svg(
            "g",
            { class: `arrow ${arrow.kind}`, transform: `translate(${fromX} ${fromY})` },
            svg("path", { d: path, transform: `rotate(${angle})` }),
        );
        if (arrow.label) {
            group.append(svg("circle", { r: 0.2 }), svg("text", { y: 0.09 }, arrow.label));
        }
        return group;
    }
}

// The square of the king of this side, for marking a check.
export function kingSquare(placement: Placement, white: boolean): number | undefined {
    const square = [...placement].findIndex(
        (piece) => piece.toLowerCase() === "k" && isWhite(piece) === white,
    );
    return square < 0 ? undefined : square;
}
