// Draws a search tree on a canvas. Each row is a ply, each box a move, and its width the number of
// moves searched under it; left to right is the order of the search. Only what is at least a pixel
// wide is drawn: a row finds the box of each pixel by binary search, so that a frame costs the same
// for a thousand records and for millions.
import { select } from "d3-selection";
import { zoom, zoomIdentity, ZoomTransform, zoomTransform } from "d3-zoom";
import { html, prefersReducedMotion } from "./dom";
import { GROUPS, groupOf } from "./endings";
import type { SearchTree } from "./searchTree";
import { Signal } from "./signal";
import type { TreeMoves } from "./treeMoves";
import { countText } from "./words";

const ROOT_HEIGHT = 24;
const MOST_ROW_HEIGHT = 28;
const MOST_HEIGHT = 400;
const LEAST_LABEL_WIDTH = 30;
const WIDEST_RECORD = 80; // pixels of a single record at the greatest zoom
const ANIMATION_MILLIS = 280;

interface Palette {
    groups: string[];
    texts: string[]; // on them
    page: string;
    text: string;
    accent: string;
    cut: string;
}

export class Icicle {
    readonly canvas = html("canvas", {
        class: "icicle",
        tabindex: 0,
        role: "application",
        "aria-roledescription": "search tree",
        "aria-label": "The tree of the search",
    });
    readonly selected = new Signal<number>(); // by the person; -1 is the root
    readonly hovered = new Signal<number | null>();
    private tree: SearchTree | null = null;
    private moves: TreeMoves | null = null;
    private selection = -1;
    private labels = new Map<number, string>();
    private palette: Palette | null = null;
    private frame = 0;
    private animation = 0;
    private width = 0;
    private height = 0;
    private readonly zooming = zoom<HTMLCanvasElement, unknown>();

    constructor() {
        const canvas = select<HTMLCanvasElement, unknown>(this.canvas);
        this.zooming.filter((event) => this.wantsZoom(event)).on("zoom", () => this.redraw());
        canvas.call(this.zooming).on("dblclick.zoom", null);
        canvas.on("click", (event) => this.onClick(event));
        canvas.on("pointermove", (event) => this.hovered.send(this.recordAt(event)));
        canvas.on("pointerleave", () => this.hovered.send(null));
        canvas.on("keydown", (event) => this.onKey(event));
        new ResizeObserver(() => this.resize()).observe(this.canvas);
    }

    show(tree: SearchTree, moves: TreeMoves): void {
        this.tree = tree;
        this.moves = moves;
        this.selection = -1;
        this.labels = new Map();
        const rows = tree.levels.length;
        this.canvas.style.height = `${ROOT_HEIGHT + Math.min(MOST_HEIGHT, rows * MOST_ROW_HEIGHT)}px`;
        this.resize();
        this.setView(0, tree.count);
    }

    // Marks a record. With `follow`, scrolls it into view; with `zoomIn`, fills the width with it.
    mark(index: number, how: "follow" | "zoomIn" | "stay" = "stay"): void {
        this.selection = index;
        if (how === "zoomIn") {
            this.zoomTo(index);
        } else if (how === "follow") {
            this.follow(index);
        }
        this.redraw();
    }

    recolor(): void {
        this.palette = null;
        this.redraw();
    }

    // ---- The part of the tree that is seen ----

    // From which place to which, in records.
    private view(): [number, number] {
        const { k, x } = zoomTransform(this.canvas);
        const scale = (this.width * k) / this.tree!.count;
        return [-x / scale, (this.width - x) / scale];
    }

    private transformFor(from: number, to: number): ZoomTransform {
        const count = this.tree!.count;
        const k = Math.min(this.greatestZoom(), count / Math.max(1e-9, to - from));
        return zoomIdentity.translate((-from / count) * this.width * k, 0).scale(k);
    }

    private setView(from: number, to: number): void {
        cancelAnimationFrame(this.animation);
        select<HTMLCanvasElement, unknown>(this.canvas).call(
            this.zooming.transform,
            this.transformFor(from, to),
        );
    }

    private greatestZoom(): number {
        return Math.max(1, (this.tree!.count * WIDEST_RECORD) / Math.max(1, this.width));
    }

    private span(index: number): [number, number] {
        return index < 0 ? [0, this.tree!.count] : [index, index + this.tree!.size[index]];
    }

    private zoomTo(index: number): void {
        if (this.tree && this.tree.count > 0) {
            this.animateTo(...this.span(index));
        }
    }

    // Moves the view as little as possible until the record is seen, at least some pixels wide.
    private follow(index: number): void {
        if (!this.tree || index < 0) {
            return;
        }
        const [from, to] = this.view();
        const [start, end] = this.span(index);
        const wide = ((end - start) / (to - from)) * this.width >= 3;
        if (start < from || end > to || !wide) {
            const parent = this.tree.records.parent(index);
            const [first, last] = this.span(parent);
            const most = Math.max(end - start, this.width / 4);
            const middle = (start + end) / 2;
            this.animateTo(Math.max(first, middle - most), Math.min(last, middle + most));
        }
    }

    private animateTo(from: number, to: number): void {
        if (prefersReducedMotion() || this.width === 0) {
            this.setView(from, to);
            return;
        }
        cancelAnimationFrame(this.animation);
        const [oldFrom, oldTo] = this.view();
        const started = performance.now();
        const step = (): void => {
            const part = Math.min(1, (performance.now() - started) / ANIMATION_MILLIS);
            const eased = 1 - (1 - part) ** 3;
            this.setView(oldFrom + (from - oldFrom) * eased, oldTo + (to - oldTo) * eased);
            if (part < 1) {
                this.animation = requestAnimationFrame(step);
            }
        };
        step();
    }

    // ---- Mouse, touch and keyboard ----

    // The wheel scrolls the page until the tree has the focus, one finger until the tree is zoomed.
    private wantsZoom(event: Event): boolean {
        if (!this.tree) {
            return false;
        }
        if (event instanceof WheelEvent) {
            return event.ctrlKey || document.activeElement === this.canvas;
        }
        return !("button" in event) || event.button === 0;
    }

    private recordAt(event: MouseEvent): number | null {
        if (!this.tree) {
            return null;
        }
        const row = Math.floor((event.offsetY - ROOT_HEIGHT) / this.rowHeight());
        if (event.offsetY < ROOT_HEIGHT) {
            return -1;
        }
        if (row >= this.tree.levels.length) {
            return null;
        }
        const [from, to] = this.view();
        const place = from + (event.offsetX / this.width) * (to - from);
        const record = this.tree.levels[row][this.tree.locate(row, place)];
        return record !== undefined && record <= place ? record : null;
    }

    private onClick(event: MouseEvent): void {
        const record = this.recordAt(event);
        if (record !== null) {
            this.choose(record);
            this.zoomTo(record);
        }
    }

    private choose(record: number): void {
        this.selection = record;
        this.redraw();
        this.selected.send(record);
    }

    private onKey(event: KeyboardEvent): void {
        const target = this.tree && this.target(event.key);
        if (target === null || target === undefined) {
            return;
        }
        event.preventDefault();
        this.choose(target);
        if (event.key === "Enter" || event.key === "Escape" || event.key === "Home") {
            this.zoomTo(target);
        } else {
            this.follow(target);
        }
    }

    // Where a key leads from the selected record.
    private target(key: string): number | null {
        const tree = this.tree!;
        const at = this.selection;
        const parent = at < 0 ? -1 : tree.records.parent(at);
        switch (key) {
            case "ArrowDown":
                return tree.children(at)[0] ?? null;
            case "ArrowUp":
            case "Escape":
                return parent;
            case "ArrowLeft":
                return at < 0 ? null : tree.sibling(at, -1);
            case "ArrowRight":
                return at < 0 ? null : tree.sibling(at, 1);
            case "Enter":
                return at;
            case "Home":
                return -1;
            default:
                return null;
        }
    }

    // ---- Drawing ----

    private rowHeight(): number {
        const rows = Math.max(1, this.tree?.levels.length ?? 1);
        return Math.min(MOST_ROW_HEIGHT, Math.floor((this.height - ROOT_HEIGHT) / rows));
    }

    private resize(): void {
        const { clientWidth, clientHeight } = this.canvas;
        if (clientWidth === 0 || !this.tree) {
            return;
        }
        const view = this.width > 0 ? this.view() : null;
        const ratio = devicePixelRatio;
        [this.width, this.height] = [clientWidth, clientHeight];
        this.canvas.width = Math.round(clientWidth * ratio);
        this.canvas.height = Math.round(clientHeight * ratio);
        this.zooming
            .extent([
                [0, 0],
                [this.width, this.height],
            ])
            .translateExtent([
                [0, 0],
                [this.width, this.height],
            ])
            .scaleExtent([1, this.greatestZoom()]);
        this.setView(...(view ?? ([0, this.tree.count] as [number, number])));
        this.redraw();
    }

    private redraw(): void {
        cancelAnimationFrame(this.frame);
        this.frame = requestAnimationFrame(() => this.draw());
    }

    private colors(): Palette {
        const style = getComputedStyle(this.canvas);
        const color = (name: string): string => style.getPropertyValue(name).trim();
        this.palette ??= {
            groups: GROUPS.map((group) => color(group.color)),
            texts: GROUPS.map((group) => color(`${group.color}-text`)),
            page: color("--sheet"),
            text: color("--text"),
            accent: color("--accent"),
            cut: color("--tree-cut"),
        };
        return this.palette;
    }

    private draw(): void {
        const context = this.canvas.getContext("2d");
        if (!context || !this.tree || this.width === 0) {
            return;
        }
        const colors = this.colors();
        context.setTransform(devicePixelRatio, 0, 0, devicePixelRatio, 0, 0);
        context.fillStyle = colors.page;
        context.fillRect(0, 0, this.width, this.height);
        context.font = "12px system-ui, sans-serif";
        context.textBaseline = "middle";
        this.drawRoot(context, colors);
        for (let ply = 0; ply < this.tree.levels.length; ++ply) {
            this.drawRow(context, colors, ply);
        }
        this.drawSelection(context, colors);
    }

    private drawRoot(context: CanvasRenderingContext2D, colors: Palette): void {
        context.fillStyle = colors.text;
        const text = `The position: ${countText(this.tree!.count)} moves tried, from left to right`;
        context.fillText(text, 6, ROOT_HEIGHT / 2, this.width - 12);
    }

    private drawRow(context: CanvasRenderingContext2D, colors: Palette, ply: number): void {
        const tree = this.tree!;
        const level = tree.levels[ply];
        const [from, to] = this.view();
        const scale = this.width / (to - from);
        const height = this.rowHeight();
        const y = ROOT_HEIGHT + ply * height;
        for (let i = tree.locate(ply, from); i < level.length && level[i] < to;) {
            const record = level[i];
            const x = (record - from) * scale;
            const width = tree.size[record] * scale;
            const group = groupOf(tree.records.ending(record));
            context.fillStyle = colors.groups[group];
            if (width < 1) {
                const pixel = Math.floor(x);
                context.fillRect(pixel, y, 1, height - 1);
                i = tree.locate(ply, from + (pixel + 1) / scale, i + 1);
            } else {
                const gap = width > 4 ? 1 : 0;
                context.fillRect(x, y, width - gap, height - 1);
                if (width > 8) {
                    this.drawInside(
                        context,
                        colors,
                        record,
                        Math.max(0, x),
                        y,
                        Math.min(this.width, x + width) - 1,
                    );
                }
                ++i;
            }
        }
    }

    // The label of a box and the mark of a cut-off.
    private drawInside(
        context: CanvasRenderingContext2D,
        colors: Palette,
        record: number,
        left: number,
        y: number,
        right: number,
    ): void {
        const height = this.rowHeight();
        if (this.tree!.failedHigh(record)) {
            context.fillStyle = colors.cut;
            context.fillRect(right - 3, y, 3, height - 1);
        }
        if (right - left > LEAST_LABEL_WIDTH && height > 11) {
            const label = this.label(record);
            context.fillStyle = colors.texts[groupOf(this.tree!.records.ending(record))];
            context.fillText(label, left + 5, y + height / 2, right - left - 8);
        }
    }

    private label(record: number): string {
        let label = this.labels.get(record);
        if (label === undefined) {
            label = this.moves!.label(record);
            this.labels.set(record, label);
        }
        return label;
    }

    // The path to the selected record, and a line down from its start: the moment in the search.
    private drawSelection(context: CanvasRenderingContext2D, colors: Palette): void {
        if (this.selection < 0) {
            return;
        }
        const [from, to] = this.view();
        const scale = this.width / (to - from);
        const height = this.rowHeight();
        const now = (this.selection - from) * scale;
        context.strokeStyle = colors.accent;
        context.lineWidth = 1;
        context.setLineDash([3, 3]);
        context.beginPath();
        context.moveTo(now, ROOT_HEIGHT);
        context.lineTo(now, this.height);
        context.stroke();
        context.setLineDash([]);
        context.lineWidth = 2.5;
        for (const record of this.tree!.path(this.selection)) {
            const left = Math.max(-4, (record - from) * scale);
            const right = Math.min(
                this.width + 4,
                (record + this.tree!.size[record] - from) * scale,
            );
            const y = ROOT_HEIGHT + this.tree!.ply[record] * height;
            context.strokeRect(left + 1, y + 1, Math.max(2, right - left - 3), height - 3);
        }
    }
}
