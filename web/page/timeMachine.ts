// Steps through the moves of a pass in search order.
import type { Describer } from "./describe";
import { button, byId, html, svg } from "./dom";
import { Signal } from "./signal";
import { countText } from "./words";

const BAR_PAWNS = 3; // the windows are drawn from -3 to +3 pawns
const BAR_WIDTH = 150;
const BAR_HEIGHT = 16;

export class TimeMachine {
    readonly moved = new Signal<number>(); // to this record
    private describer: Describer | null = null;
    private at = -1;
    private readonly slider = byId<HTMLInputElement>("time");
    private readonly refuted = button(
        "Go to where this move was refuted",
        () => this.goToRefutation(),
        { id: "refuted" },
    );

    constructor() {
        this.slider.addEventListener("input", () => this.go(Number(this.slider.value) - 1));
        byId("steps").append(
            button("Start", () => this.go(-1)),
            button("Step back", () => this.go(this.at - 1), { id: "step-back" }),
            button("Step", () => this.go(this.at + 1), { id: "step" }),
            button("Step over", () => this.go(this.over()), {
                id: "step-over",
                title: "Past all moves tried after this one",
            }),
            button("Next cut-off", () => this.go(this.nextCut()), { id: "next-cut" }),
            this.refuted,
        );
    }

    show(describer: Describer): void {
        this.describer = describer;
        this.slider.max = String(describer.tree.count);
        this.set(-1);
    }

    // Shows a record that was chosen elsewhere; -1 is the time before the first move.
    set(index: number): void {
        this.at = index;
        this.slider.value = String(index + 1);
        this.draw();
    }

    private go(index: number): void {
        const last = (this.describer?.tree.count ?? 0) - 1;
        this.set(Math.max(-1, Math.min(last, index)));
        this.moved.send(this.at);
    }

    private over(): number {
        return this.at < 0 ? 0 : this.at + this.describer!.tree.size[this.at];
    }

    private nextCut(): number {
        const { tree } = this.describer!;
        let index = this.at + 1;
        while (index < tree.count && !tree.failedHigh(index)) {
            ++index;
        }
        return index < tree.count ? index : this.at;
    }

    private goToRefutation(): void {
        const refutation = this.at < 0 ? null : this.describer!.tree.refutation(this.at);
        if (refutation !== null) {
            this.go(refutation);
        }
    }

    private draw(): void {
        const { describer, at } = this;
        if (!describer) {
            return;
        }
        const { tree } = describer;
        this.refuted.disabled = at < 0 || tree.refutation(at) === null || !tree.failedLow(at);
        const now =
            at < 0
                ? "Before the first move."
                : `Move ${countText(at + 1)} of ${countText(tree.count)}: ${describer.name(at)}`;
        this.slider.setAttribute("aria-valuetext", now);
        byId("time-now").textContent = now;
        byId("time-ended").textContent = this.justEnded();
        byId("path-rows").replaceChildren(...tree.path(at).map((index) => this.row(index)));
    }

    // What the search had just decided when it came to this move.
    private justEnded(): string {
        const describer = this.describer!;
        const { tree } = describer;
        if (this.at <= 0) {
            return "Nothing is decided yet.";
        }
        const parent = tree.records.parent(this.at);
        const before = this.at - 1;
        if (before === parent) {
            return `The first answer to ${describer.name(parent)}.`;
        }
        // Of the moves that ended, the one closest to the root: a sibling of this move.
        const ended = tree.sibling(this.at, -1)!;
        const refutation = tree.refutation(ended);
        if (refutation !== null) {
            return (
                `Just cut: the answers to ${describer.name(ended)} after ${describer.name(refutation)} ` +
                `(${describer.scoreText(refutation)}), which refutes it.`
            );
        }
        return `Just ended: ${describer.name(ended)}, score ${describer.scoreText(ended)}. ${describer.verdict(ended)}`;
    }

    private row(index: number): HTMLElement {
        const describer = this.describer!;
        const isNow = index === this.at;
        const choose = button(describer.name(index), () => this.go(index), { class: "plain" });
        return html(
            "tr",
            isNow ? { "aria-current": "step" } : {},
            html("th", { scope: "row" }, choose),
            html("td", {}, this.bar(index, isNow)),
            html("td", {}, isNow ? describer.scoreText(index) : "being searched"),
        );
    }

    // The window, and the score if it is known by now.
    private bar(index: number, isNow: boolean): SVGSVGElement {
        const describer = this.describer!;
        const x = (value: number): number =>
            Math.max(0, Math.min(1, (value / 1000 + BAR_PAWNS) / (2 * BAR_PAWNS))) * BAR_WIDTH;
        const { floor, ceiling } = describer.window(index);
        const bar = svg(
            "svg",
            {
                viewBox: `0 0 ${BAR_WIDTH} ${BAR_HEIGHT}`,
                class: "window",
                role: "img",
                "aria-label": describer.windowText(index),
            },
            svg("title", {}, describer.windowText(index)),
            svg("rect", { width: BAR_WIDTH, height: BAR_HEIGHT, class: "outside" }),
            svg("rect", {
                x: x(floor),
                width: Math.max(2, x(ceiling) - x(floor)),
                height: BAR_HEIGHT,
                class: "inside",
            }),
            svg("line", { x1: BAR_WIDTH / 2, x2: BAR_WIDTH / 2, y2: BAR_HEIGHT, class: "zero" }),
        );
        if (isNow && !describer.tree.isSkipped(index)) {
            const at = x(describer.scoreForWhite(index));
            bar.append(
                svg("circle", {
                    cx: Math.max(4, Math.min(BAR_WIDTH - 4, at)),
                    cy: BAR_HEIGHT / 2,
                    r: 4,
                    class: "score",
                }),
            );
        }
        return bar;
    }
}
