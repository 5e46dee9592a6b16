// Reviews the game: the score of every move, the costliest ones with reasons.
import type { Arrow } from "./boardPicture";
import { announce } from "./announce";
import { gameChart, GamePoint } from "./chart";
import { button, byId, html } from "./dom";
import { Client, Stopped } from "./engine";
import { saveText } from "./files";
import type { Game } from "./game";
import { numbered, parseStep } from "./placement";
import type { CostlyMove, ReviewDone, ReviewedMove } from "./protocol";
import type { Stage } from "./stage";
import { chartValue, scoreText } from "./words";

export class Review {
    // Reads the game as PGN; asks "why not" of a move after some moves of the game.
    pgn: () => Promise<string> = () => Promise.resolve("");
    onWhy: (at: number, move: string) => void = () => {};
    private moves: ReviewedMove[] = [];
    private done: ReviewDone | null = null;
    private frame = 0;

    constructor(
        private readonly analyst: Client,
        private readonly game: Game,
        private readonly stage: Stage,
    ) {
        byId("review-start").addEventListener("click", () => void this.start());
        byId("review-cancel").addEventListener("click", () => this.analyst.stop());
        byId("review-save").addEventListener("click", () =>
            saveText(this.done?.pgn ?? "", "kestran-review.pgn"),
        );
    }

    // Ends a review and forgets it, as the game has changed.
    reset(): void {
        if (!byId("review-running").hidden) {
            this.analyst.stop();
        }
        this.clear();
    }

    private clear(): void {
        this.moves = [];
        this.done = null;
        this.draw();
    }

    private async start(): Promise<void> {
        if (this.game.moves.length === 0) {
            this.note("Play a game or open one first.");
            return;
        }
        this.analyst.stop();
        this.clear();
        const nodes = Number(byId<HTMLSelectElement>("review-nodes").value);
        this.setRunning(true);
        try {
            this.done = await this.analyst.ask<ReviewDone, ReviewedMove>(
                { type: "review", pgn: await this.pgn(), game: 0, nodes },
                (move) => this.add(move),
            );
            this.note("");
            announce(`The review is done. ${this.done.costliest.length} costly moves.`);
        } catch (error) {
            this.note(
                error instanceof Stopped
                    ? "Cancelled."
                    : error instanceof Error
                      ? error.message
                      : "It failed.",
            );
        }
        this.setRunning(false);
        this.draw();
    }

    private add(move: ReviewedMove): void {
        this.moves.push(move);
        const progress = byId<HTMLProgressElement>("review-progress");
        progress.max = move.count;
        progress.value = this.moves.length;
        this.note(`Move ${this.moves.length} of ${move.count}`);
        cancelAnimationFrame(this.frame);
        this.frame = requestAnimationFrame(() => this.draw());
    }

    private setRunning(running: boolean): void {
        byId("review-start").hidden = running;
        byId("review-running").hidden = !running;
        byId<HTMLProgressElement>("review-progress").value = 0;
    }

    private note(text: string): void {
        byId("review-note").textContent = text;
    }

    private name(move: ReviewedMove | CostlyMove): string {
        return numbered([move.move.san], this.game.firstPly + move.ply);
    }

    private draw(): void {
        const costly = new Set(this.done?.costliest.map((move) => move.ply));
        const points: GamePoint[] = this.moves.map((move) => ({
            ply: move.ply + 1,
            value: chartValue(move.after),
            label: `${this.name(move)} ${scoreText(move.after)}`,
            costly: costly.has(move.ply),
        }));
        const chart =
            points.length > 0
                ? [gameChart(points, this.game.moves.length, (ply) => this.stage.showGame(ply))]
                : [];
        byId("review-chart").replaceChildren(...chart);
        byId("costly").replaceChildren(
            ...(this.done?.costliest ?? []).map((move) => this.item(move)),
        );
        byId("review-save").hidden = this.done === null;
        byId("costly-title").hidden = this.done === null;
        byId("costly-title").textContent =
            this.done?.costliest.length === 0 ? "No costly moves" : "The costliest moves";
    }

    private item(costly: CostlyMove): HTMLElement {
        const reviewed = this.moves.find((move) => move.ply === costly.ply);
        const better =
            reviewed && reviewed.best.length > 0
                ? `Better: ${numbered(
                      reviewed.best.slice(0, 5).map((move) => move.san),
                      this.game.firstPly + costly.ply,
                  )}. `
                : "";
        const refutation = costly.refutation.map((move) => move.san);
        const sequel =
            refutation.length > 0
                ? `Refuted by ${numbered(refutation, this.game.firstPly + costly.ply + 1)}.`
                : "";
        return html(
            "li",
            {},
            html(
                "h3",
                {},
                this.name(costly),
                html("span", { class: "cost" }, `\u2212${(costly.cost / 100).toFixed(2)}`),
            ),
            html("p", {}, costly.reason),
            html("p", { class: "quiet" }, better + sequel),
            html(
                "div",
                { class: "row" },
                button("Show", () => this.show(costly, reviewed)),
                button("Refutation", () => this.refute(costly), {
                    hidden: refutation.length === 0,
                }),
                button("Why not?", () => this.onWhy(costly.ply, costly.move.uci)),
            ),
        );
    }

    // Before the move: what was played and what was better.
    private show(costly: CostlyMove, reviewed: ReviewedMove | undefined): void {
        const arrow = (uci: string, kind: Arrow["kind"]): Arrow => ({ ...parseStep(uci), kind });
        const best = reviewed?.best[0];
        this.stage.showGame(costly.ply);
        this.stage.point([
            arrow(costly.move.uci, "played"),
            ...(best ? [arrow(best.uci, "choice")] : []),
        ]);
    }

    private refute(costly: CostlyMove): void {
        this.stage.showGame(costly.ply + 1);
        this.stage.point(
            costly.refutation.slice(0, 4).map((move, i) => ({
                ...parseStep(move.uci),
                kind: i % 2 === 0 ? ("refutation" as const) : ("line" as const),
                label: String(i + 1),
            })),
        );
    }
}
