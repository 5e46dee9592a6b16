// A chess board for mouse, touch and keyboard: a picture under a grid of squares. It knows which
// moves are legal only from its caller.
import { BoardPicture, View } from "./boardPicture";
import { html } from "./dom";
import { pieceName } from "./pieces";
import { squareName, squareNumber } from "./placement";

// Gets the moves between two squares: more than one for a promotion.
type MoveHandler = (moves: string[]) => void;

const DRAG_PIXELS = 6;

export class Board {
    readonly element: HTMLElement;
    private readonly picture = new BoardPicture();
    private readonly cells: HTMLElement[] = []; // by square
    private view: View = { placement: ".".repeat(64) };
    private legal: string[] = []; // in long algebraic text
    private selected: number | null = null;
    private focused = squareNumber("e2");
    private drag: { x: number; y: number; piece: SVGGElement | null; wasSelected: boolean } | null =
        null;

    constructor(
        label: string,
        private readonly onMoves: MoveHandler,
    ) {
        this.element = html("div", { class: "board" }, this.picture.element, this.makeGrid(label));
        this.draw();
    }

    // Without legal moves the board takes no input.
    show(view: View, legal: string[] = []): void {
        const isSame = view.placement === this.view.placement && legal.join() === this.legal.join();
        this.view = view;
        this.legal = legal;
        if (!isSame) {
            this.selected = null;
        }
        this.draw();
    }

    flip(flipped: boolean): void {
        this.picture.flipped = flipped;
        this.arrange();
        this.draw();
    }

    // ---- The grid ----

    private makeGrid(label: string): HTMLElement {
        const grid = html("div", { class: "cells", role: "grid", "aria-label": label });
        for (let row = 0; row < 8; ++row) {
            grid.append(html("div", { role: "row" }));
        }
        for (let square = 0; square < 64; ++square) {
            const cell = html("div", {
                role: "gridcell",
                tabindex: -1,
                "data-square": squareName(square),
            });
            cell.addEventListener("focus", () => this.setFocus(square));
            this.cells.push(cell);
        }
        grid.addEventListener("keydown", (event) => this.onKey(event));
        grid.addEventListener("pointerdown", (event) => this.onDown(event));
        grid.addEventListener("pointermove", (event) => this.onDrag(event));
        grid.addEventListener("pointerup", (event) => this.onUp(event));
        grid.addEventListener("pointercancel", () => this.endDrag());
        this.arrange(grid);
        return grid;
    }

    // Puts the squares into the order in which they are seen.
    private arrange(grid: Element = this.element.querySelector(".cells")!): void {
        const hadFocus = grid.contains(document.activeElement);
        for (let place = 0; place < 64; ++place) {
            grid.children[place >> 3].append(this.cells[this.picture.flipped ? 63 - place : place]);
        }
        if (hadFocus) {
            this.cells[this.focused].focus();
        }
    }

    private setFocus(square: number): void {
        this.cells[this.focused].tabIndex = -1;
        this.focused = square;
        this.cells[square].tabIndex = 0;
    }

    private onKey(event: KeyboardEvent): void {
        const steps: Record<string, [number, number]> = {
            ArrowLeft: [-1, 0],
            ArrowRight: [1, 0],
            ArrowUp: [0, -1],
            ArrowDown: [0, 1],
        };
        const step = steps[event.key];
        if (step) {
            this.moveFocus(step[0], step[1]);
        } else if (event.key === "Enter" || event.key === " ") {
            this.choose(this.focused);
        } else if (event.key === "Escape" && this.selected !== null) {
            this.select(null);
        } else {
            return;
        }
        event.preventDefault();
    }

    private moveFocus(columns: number, rows: number): void {
        const sign = this.picture.flipped ? -1 : 1;
        const column = (this.focused & 7) + sign * columns;
        const row = (this.focused >> 3) + sign * rows;
        if (column >= 0 && column < 8 && row >= 0 && row < 8) {
            this.cells[8 * row + column].focus();
        }
    }

    // ---- Choosing a move ----

    private movesFrom(square: number): string[] {
        return this.legal.filter((move) => move.startsWith(squareName(square)));
    }

    private movesBetween(from: number, to: number): string[] {
        return this.movesFrom(from).filter((move) => move.slice(2, 4) === squareName(to));
    }

    private select(square: number | null): void {
        this.selected = square;
        this.draw();
    }

    // A square was clicked, touched, or chosen by key.
    private choose(square: number): void {
        const moves = this.selected === null ? [] : this.movesBetween(this.selected, square);
        if (moves.length > 0) {
            this.select(null);
            this.onMoves(moves);
        } else {
            const canMove = square !== this.selected && this.movesFrom(square).length > 0;
            this.select(canMove ? square : null);
        }
    }

    // ---- Mouse and touch ----

    private squareAt(event: PointerEvent): number | null {
        const box = this.picture.element.getBoundingClientRect();
        const column = Math.floor(((event.clientX - box.left) / box.width) * 8);
        const row = Math.floor(((event.clientY - box.top) / box.height) * 8);
        if (column < 0 || column > 7 || row < 0 || row > 7) {
            return null;
        }
        const place = 8 * row + column;
        return this.picture.flipped ? 63 - place : place;
    }

    private onDown(event: PointerEvent): void {
        const square = this.squareAt(event);
        if (square === null || event.button !== 0) {
            return;
        }
        this.drag = {
            x: event.clientX,
            y: event.clientY,
            piece: null,
            wasSelected: this.selected === square,
        };
        const isTarget =
            this.selected !== null && this.movesBetween(this.selected, square).length > 0;
        if (isTarget) {
            this.drag = null;
            this.choose(square);
        } else if (this.movesFrom(square).length > 0) {
            this.select(square);
            (event.currentTarget as Element).setPointerCapture(event.pointerId);
        } else {
            this.drag = null;
            this.select(null);
        }
    }

    private onDrag(event: PointerEvent): void {
        if (!this.drag || this.selected === null) {
            return;
        }
        const [dx, dy] = [event.clientX - this.drag.x, event.clientY - this.drag.y];
        if (!this.drag.piece && Math.hypot(dx, dy) > DRAG_PIXELS) {
            this.drag.piece = this.picture.element.querySelector(`[data-piece="${this.selected}"]`);
            this.picture.element.append(this.drag.piece!);
        }
        if (this.drag.piece) {
            const size = this.picture.element.getBoundingClientRect().width / 8;
            const [column, row] = this.picture.place(this.selected);
            this.drag.piece.setAttribute(
                "transform",
                `translate(${column + dx / size} ${row + dy / size})`,
            );
        }
    }

    private onUp(event: PointerEvent): void {
        const drag = this.drag;
        this.drag = null;
        if (!drag || this.selected === null) {
            return;
        }
        if (drag.piece) {
            const square = this.squareAt(event);
            const moves = square === null ? [] : this.movesBetween(this.selected, square);
            this.select(null);
            if (moves.length > 0) {
                this.onMoves(moves);
            }
        } else if (drag.wasSelected) {
            this.select(null);
        }
    }

    private endDrag(): void {
        this.drag = null;
        this.select(null);
    }

    // A piece that is being dragged keeps its place in the picture until it is dropped.
    private draw(): void {
        if (this.drag?.piece) {
            return;
        }
        const selected = this.selected ?? undefined;
        const moves = selected === undefined ? [] : this.movesFrom(selected);
        const targets = [...new Set(moves.map((move) => squareNumber(move.slice(2, 4))))];
        this.picture.show({ ...this.view, selected, targets });
        this.labelCells();
    }

    private labelCells(): void {
        this.cells.forEach((cell, square) => {
            const canMove = this.movesFrom(square).length > 0;
            const isTarget =
                this.selected !== null && this.movesBetween(this.selected, square).length > 0;
            const notes = [
                squareName(square),
                pieceName(this.view.placement[square]),
                isTarget ? "can be moved to" : "",
                this.view.check === square ? "in check" : "",
            ];
            cell.setAttribute("aria-label", notes.filter(Boolean).join(", "));
            cell.setAttribute("aria-selected", String(square === this.selected));
            cell.classList.toggle("can-move", canMove || isTarget);
            cell.tabIndex = square === this.focused ? 0 : -1;
        });
    }
}
