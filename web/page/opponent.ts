// Plays the engine's side of the game, and gives hints.
import { Client, Stopped } from "./engine";
import type { Game } from "./game";
import type { Level } from "./levels";
import { numbered, parseStep } from "./placement";
import type { Limits, Pass, SearchDone } from "./protocol";
import type { Stage } from "./stage";
import type { Thinking } from "./thinking";
import { forWhite, negated } from "./words";

const LEAST_MILLIS = 250; // before an answer, so that a person sees their own move first
const HINT: Limits = { nodes: 2_000_000, time: 1500 };

export class Opponent {
    level: Level = { name: "", limits: { nodes: 1000 } };
    person: "w" | "b" | "both" = "w";
    // Called with a short text while it thinks and "" afterwards.
    onState: (text: string) => void = () => {};
    // The game before the last move that it chose, and how deep it searched.
    last: { at: number; depth: number } | null = null;

    constructor(
        private readonly client: Client,
        private readonly game: Game,
        private readonly stage: Stage,
        private readonly thinking: Thinking,
    ) {}

    isPersonsTurn(turn: "w" | "b"): boolean {
        return this.person === "both" || this.person === turn;
    }

    stop(): void {
        this.client.stop();
    }

    // Plays a move if it is the engine's turn.
    async reply(): Promise<void> {
        const { state } = this.game;
        if (state.end || this.isPersonsTurn(state.turn)) {
            return;
        }
        const at = this.game.moves.length;
        const started = performance.now();
        this.onState("Kestran is thinking");
        const done = await this.search(this.level.limits, true, this.level.elo);
        await new Promise((resolve) =>
            setTimeout(resolve, LEAST_MILLIS - (performance.now() - started)),
        );
        const isOutdated =
            this.game.moves.length !== at || this.isPersonsTurn(this.game.state.turn);
        if (done && !isOutdated) {
            this.onState(done.fromBook ? "Kestran answers from its opening book" : "");
            this.last = { at, depth: this.thinking.best?.depth ?? 0 };
            await this.game.play(done.best!.uci);
        }
    }

    // Points at a good move.
    async hint(): Promise<void> {
        if (this.game.state.end || this.client.busy) {
            return;
        }
        this.stage.showGame();
        this.onState("Looking for a hint");
        const at = this.game.moves.length;
        const done = await this.search(HINT, false);
        if (!done?.best || this.game.moves.length !== at) {
            return;
        }
        const { turn } = this.game.state;
        const move = parseStep(done.best.uci);
        const best = this.thinking.best;
        const score = best
            ? `, ${forWhite(turn === "w" ? best.score : negated(best.score), true)} for White`
            : "";
        this.stage.point([{ from: move.from, to: move.to, kind: "choice" }]);
        this.onState(`Hint: ${numbered([done.best.san], this.game.firstPly + at)}${score}`);
    }

    // Null if the search was stopped.
    private async search(
        limits: Limits,
        useBook: boolean,
        elo?: number,
    ): Promise<SearchDone | null> {
        const at = this.game.moves.length;
        const { turn } = this.game.state;
        this.thinking.begin({
            whiteToMove: turn === "w",
            ply: this.game.firstPly + at,
            title: useBook ? "Kestran\u2019s last move" : "The hint",
        });
        try {
            const request = {
                type: "search" as const,
                ...this.game.upTo(at),
                limits,
                useBook,
                elo,
            };
            return await this.client.ask<SearchDone, Pass>(request, (pass) =>
                this.thinking.add(pass),
            );
        } catch (error) {
            if (error instanceof Stopped) {
                this.onState("");
                return null;
            }
            throw error;
        }
    }
}
