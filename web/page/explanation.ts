// "Why not?": asks for a move that the engine did not play, and shows why.
import type { Arrow } from "./boardPicture";
import { announce } from "./announce";
import { byId } from "./dom";
import { Client, Stopped } from "./engine";
import type { Game } from "./game";
import { afterStep, numbered, parseStep, placementOf, plyOf } from "./placement";
import type { Answer, Game as GameText, MoveText, PositionDone, WhyDone } from "./protocol";
import type { Stage } from "./stage";
import type { TreePanel } from "./treePanel";

export class Explanation {
    // Shows the panel of the tree.
    onOpen: () => void = () => {};
    private refutation: (() => void) | null = null;
    private asked: { base: GameText; line: string[] } | null = null;

    constructor(
        private readonly analyst: Client,
        private readonly rules: Client,
        private readonly game: Game,
        private readonly stage: Stage,
        private readonly tree: TreePanel,
        private readonly depth: () => number,
    ) {
        byId("show-refutation").addEventListener("click", () => this.refutation?.());
        byId("add-move").addEventListener("click", () => void this.addMove());
        byId("close-why").addEventListener("click", () => this.close());
    }

    close(): void {
        byId("why").hidden = true;
        this.asked = null;
    }

    // Asks for the person's move in the position after `at` moves of the game.
    async begin(at: number): Promise<void> {
        const base = this.game.upTo(at);
        const position = await this.rules.ask<PositionDone>({ type: "position", ...base });
        const played = this.game.sans[at];
        const caption =
            played === undefined
                ? "Make a move, and Kestran says why it would not play it."
                : `Make the move you would have played instead of ${numbered([played], this.game.firstPly + at)}.`;
        this.stage.ask(at, position, caption, (move) => void this.explain(base, [move]));
        announce(caption);
    }

    // Explains why the search did not follow a line from the position after `base`.
    async explain(base: GameText, line: string[]): Promise<void> {
        this.onOpen();
        this.analyst.stop();
        this.asked = { base, line };
        const position = await this.rules.ask<PositionDone>({
            type: "position",
            fen: base.fen,
            moves: [...base.moves, ...line],
        });
        const root = position.fens[base.moves.length];
        const name = numbered(
            position.moves.slice(base.moves.length).map((move) => move.san),
            plyOf(root),
        );
        this.title(`Why not ${name}?`);
        try {
            await this.answer(base, line, root);
        } catch (error) {
            if (!(error instanceof Stopped)) {
                this.say({
                    verdict: error instanceof Error ? error.message : "No answer.",
                    reason: "",
                    details: "",
                });
            }
        }
    }

    private async answer(base: GameText, line: string[], root: string): Promise<void> {
        const depth = this.depth();
        if (!this.tree.has(base, depth)) {
            await this.tree.record(base, depth, "Where the search left it");
        }
        const answer = await this.analyst.ask<WhyDone>({ type: "why", ...base, line, depth });
        this.say(answer);
        await this.show(answer, line, root);
        announce([answer.verdict, answer.reason].join(" "));
    }

    private title(text: string): void {
        byId("why").hidden = false;
        byId("why-title").textContent = text;
        this.say({ verdict: "Looking into the search \u2026", reason: "", details: "" });
    }

    private say(answer: Pick<Answer, "verdict" | "reason" | "details">): void {
        byId("why-verdict").textContent = answer.verdict;
        byId("why-reason").textContent = answer.reason;
        byId("why-details").textContent = answer.details;
        byId("show-refutation").hidden = true;
    }

    // An answer that the page was delivered with, in words. `ply` is that of the position.
    write(answer: Answer, line: MoveText[], ply: number): void {
        this.title(
            `Why not ${numbered(
                line.map((move) => move.san),
                ply,
            )}?`,
        );
        this.say(answer);
    }

    // Shows an answer in the tree and on the board. `root` is the position in FEN.
    async show(answer: Answer, line: string[], root: string): Promise<void> {
        await this.tree.goTo(answer.pass, line);
        this.refutation = () => this.point(answer, line, root);
        byId("show-refutation").hidden = answer.refutation.length === 0;
        this.refutation();
    }

    // The refutation as arrows, on the position in which it begins.
    private point(answer: Answer, line: string[], root: string): void {
        const played = line.slice(0, answer.refutationPly).map(parseStep);
        const placement = played.reduce(afterStep, placementOf(root));
        const arrows: Arrow[] = answer.refutation.map((move, i) => {
            const { from, to } = parseStep(move.uci);
            return { from, to, kind: i % 2 === 0 ? "refutation" : "line", label: String(i + 1) };
        });
        const ply = plyOf(root) + played.length;
        const sequel = numbered(
            answer.refutation.map((move) => move.san),
            ply,
        );
        const caption =
            arrows.length > 0 ? `The refutation: ${sequel}` : (byId("why-title").textContent ?? "");
        this.stage.look({ placement, lastMove: played[played.length - 1], arrows }, caption);
    }

    // Asks for the next move of the line.
    private async addMove(): Promise<void> {
        const { asked } = this;
        if (!asked) {
            return;
        }
        const moves = [...asked.base.moves, ...asked.line];
        const position = await this.rules.ask<PositionDone>({
            type: "position",
            fen: asked.base.fen,
            moves,
        });
        const placement = placementOf(position.fens[position.fens.length - 1]);
        const view = { placement, lastMove: parseStep(moves[moves.length - 1]) };
        this.stage.askIn(
            view,
            position,
            "Make the next move of the line.",
            (move) => void this.explain(asked.base, [...asked.line, move]),
        );
    }
}
