// Shows a search while it runs: its figures, its line, its passes.
import { passChart } from "./chart";
import { Arrow } from "./boardPicture";
import { byId, html } from "./dom";
import { numbered, parseStep } from "./placement";
import type { Pass } from "./protocol";
import { countText, forWhite, passScore, pliesText, roughCount, timeText } from "./words";

const LINE_ARROWS = 4;

export interface Searched {
    whiteToMove: boolean;
    ply: number; // of the position, from 0 for White's first move
    title: string;
}

export class Thinking {
    passes: Pass[] = [];
    searched: Searched | null = null;
    private frame = 0;

    begin(searched: Searched): void {
        this.searched = searched;
        this.passes = [];
        this.draw();
    }

    add(pass: Pass): void {
        this.passes.push(pass);
        this.draw();
    }

    // The last pass whose line is known.
    get best(): Pass | undefined {
        return [...this.passes].reverse().find((pass) => pass.outcome === "good");
    }

    // The first moves of the line as arrows.
    arrows(): Arrow[] {
        const moves = (this.best?.line ?? [])
            .slice(0, LINE_ARROWS)
            .map((move) => parseStep(move.uci));
        return moves.map((move, i) => ({
            from: move.from,
            to: move.to,
            kind: i === 0 ? "choice" : "line",
            label: String(i + 1),
        }));
    }

    // Passes can arrive faster than frames.
    draw(): void {
        cancelAnimationFrame(this.frame);
        this.frame = requestAnimationFrame(() => this.render());
    }

    private render(): void {
        const { searched, passes } = this;
        const last = passes[passes.length - 1];
        byId("thinking-empty").hidden = searched !== null;
        byId("thinking-body").hidden = searched === null;
        if (!searched) {
            return;
        }
        byId("thinking-title").textContent = searched.title;
        byId("figures").replaceChildren(...this.figures(last));
        byId("best-line").textContent =
            this.best && this.best.line.length > 0
                ? numbered(
                      this.best.line.map((move) => move.san),
                      searched.ply,
                  )
                : "no line yet";
        byId("pass-chart").replaceChildren(passChart(passes, searched.whiteToMove));
        byId("pass-rows").replaceChildren(...passes.map((pass) => this.row(pass)).reverse());
    }

    private figures(last: Pass | undefined): HTMLElement[] {
        const white = this.searched!.whiteToMove;
        const figures: Array<[string, string]> = [
            ["Score for White", this.best ? forWhite(this.best.score, white) : "\u2013"],
            ["Depth", last ? pliesText(last.depth) : "\u2013"],
            ["Moves tried", last ? roughCount(last.nodes) : "\u2013"],
            ["Each second", last && last.time > 0 ? roughCount(last.nps) : "\u2013"],
            ["Table in use", last ? `${(last.hashfull / 10).toFixed(1)} %` : "\u2013"],
            ["Time", last ? timeText(last.time) : "\u2013"],
        ];
        return figures.map(([name, value]) =>
            html("div", {}, html("dt", {}, name), html("dd", {}, value)),
        );
    }

    private row(pass: Pass): HTMLElement {
        const { whiteToMove, ply } = this.searched!;
        const line =
            pass.outcome === "good"
                ? numbered(
                      pass.line.map((move) => move.san),
                      ply,
                  )
                : pass.reason;
        return html(
            "tr",
            { class: pass.outcome === "good" ? "" : "again" },
            html("th", { scope: "row" }, String(pass.depth)),
            html("td", {}, passScore(pass, whiteToMove)),
            html("td", {}, countText(pass.passNodes)),
            html("td", {}, line),
        );
    }
}
