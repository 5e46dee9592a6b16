// The game on the board. The engine's answers say what is legal and how the game has ended.
import type { Client } from "./engine";
import { parseStep, Placement, placementOf, plyOf, Step } from "./placement";
import type { Game as GameText, PositionDone, Result, Tag } from "./protocol";
import { Signal } from "./signal";

export class Game {
    readonly changed = new Signal<void>();
    tags: Tag[] = [];
    result: Result = "*"; // as a PGN says, or of a resignation; the board's own end is in `state.end`
    private fen = "startpos";
    private answer: PositionDone | null = null;

    constructor(private readonly rules: Client) {}

    // The position after the last move. Requires a loaded game.
    get state(): PositionDone {
        return this.answer!;
    }

    get isLoaded(): boolean {
        return this.answer !== null;
    }

    get startFen(): string {
        return this.fen;
    }

    get moves(): string[] {
        return this.state.moves.map((move) => move.uci);
    }

    get sans(): string[] {
        return this.state.moves.map((move) => move.san);
    }

    // The ply of the start position, as its move number says.
    get firstPly(): number {
        return plyOf(this.state.fens[0]);
    }

    // The game up to a number of moves, as the engine wants it.
    upTo(count: number): GameText {
        return { fen: this.fen, moves: this.moves.slice(0, count) };
    }

    placementAfter(count: number): Placement {
        return placementOf(this.state.fens[count]);
    }

    moveAt(count: number): Step | undefined {
        return count > 0 ? parseStep(this.moves[count - 1]) : undefined;
    }

    turnAfter(count: number): "w" | "b" {
        return this.state.fens[count].split(" ")[1] === "b" ? "b" : "w";
    }

    // Replaces the game. If the engine refuses it, the game stays and the promise is rejected.
    async load(
        fen: string,
        moves: string[],
        tags: Tag[] = [],
        result: Result = "*",
    ): Promise<void> {
        const answer = await this.rules.ask<PositionDone>({ type: "position", fen, moves });
        this.fen = fen;
        this.answer = answer;
        this.tags = tags;
        this.result = result;
        this.changed.send();
    }

    async play(move: string): Promise<void> {
        await this.load(this.fen, [...this.moves, move], this.tags);
    }

    async takeBack(count: number): Promise<void> {
        await this.load(
            this.fen,
            this.moves.slice(0, Math.max(0, this.moves.length - count)),
            this.tags,
        );
    }
}
