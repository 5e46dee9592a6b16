// What the large board shows: the game, a place in a search tree, or a question to the person.
import { Board } from "./board";
import { Arrow, kingSquare, View } from "./boardPicture";
import { byId } from "./dom";
import type { Game } from "./game";
import { numbered } from "./placement";
import { askPromotion } from "./promotion";
import type { PositionDone } from "./protocol";
import { Signal } from "./signal";
import { sideName } from "./words";

type Mode =
    | { kind: "game" }
    | { kind: "looking"; view: View; caption: string }
    | {
          kind: "asking";
          view: View;
          legal: string[];
          caption: string;
          answer: (move: string) => void;
      };

export class Stage {
    readonly moved = new Signal<string>(); // the person has made a move in the game
    readonly shown = new Signal<void>(); // another position of the game is shown
    canMove: (turn: "w" | "b") => boolean = () => true;
    flipped = false;
    private readonly board = new Board("Chess board", (moves) => void this.onMoves(moves));
    private mode: Mode = { kind: "game" };
    private at = 0; // moves of the game before the position that is shown
    private arrows: Arrow[] = [];

    constructor(private readonly game: Game) {
        byId("board").append(this.board.element);
        byId("back").addEventListener("click", () => this.showGame());
        game.changed.listen(() => this.showGame());
    }

    // How many moves of the game precede the position that is shown.
    get place(): number {
        return this.at;
    }

    get isLive(): boolean {
        return this.mode.kind === "game" && this.at === this.game.moves.length;
    }

    get isAsking(): boolean {
        return this.mode.kind === "asking";
    }

    flip(flipped: boolean): void {
        this.flipped = flipped;
        this.board.flip(flipped);
    }

    // The position after some moves of the game, by default all of them.
    showGame(at = this.game.moves.length): void {
        this.mode = { kind: "game" };
        this.at = Math.max(0, Math.min(at, this.game.moves.length));
        this.arrows = [];
        this.draw();
        this.shown.send();
    }

    // Arrows on the position of the game; they go with it.
    point(arrows: Arrow[]): void {
        if (this.mode.kind === "game") {
            this.arrows = arrows;
            this.draw();
        }
    }

    // A position that is not the game's. The result replaces its caption, as long as it is shown.
    look(view: View, caption: string): (caption: string) => void {
        const mode: Mode = { kind: "looking", view, caption };
        this.mode = mode;
        this.draw();
        return (text) => {
            mode.caption = text;
            byId("caption").textContent = this.caption();
        };
    }

    // Asks for a move in the position after `at` moves of the game.
    ask(at: number, position: PositionDone, caption: string, answer: (move: string) => void): void {
        this.at = at;
        this.askIn(this.gameView(at), position, caption, answer);
    }

    // The same in a position that is not the game's.
    askIn(
        view: View,
        position: PositionDone,
        caption: string,
        answer: (move: string) => void,
    ): void {
        this.mode = {
            kind: "asking",
            view,
            legal: position.legal.map((move) => move.uci),
            caption,
            answer,
        };
        this.draw();
    }

    private async onMoves(moves: string[]): Promise<void> {
        const move = moves.length === 1 ? moves[0] : await this.choosePromotion(moves);
        if (!move) {
            return;
        }
        if (this.mode.kind === "asking") {
            this.mode.answer(move);
        } else {
            this.moved.send(move);
        }
    }

    private async choosePromotion(moves: string[]): Promise<string | undefined> {
        const letter = await askPromotion(moves[0][3] === "8");
        return moves.find((move) => move[4] === letter);
    }

    private gameView(at: number): View {
        const placement = this.game.placementAfter(at);
        const isLast = at === this.game.moves.length;
        const check =
            (at > 0 && /[+#]$/.test(this.game.sans[at - 1])) || (isLast && this.game.state.check);
        const white = this.game.turnAfter(at) === "w";
        return {
            placement,
            lastMove: this.game.moveAt(at),
            check: check ? kingSquare(placement, white) : undefined,
        };
    }

    private draw(): void {
        byId("back").hidden = this.isLive;
        byId("caption").textContent = this.caption();
        if (this.mode.kind === "looking") {
            this.board.show(this.mode.view);
        } else if (this.mode.kind === "asking") {
            this.board.show(this.mode.view, this.mode.legal);
        } else {
            const { state } = this.game;
            const mayMove = this.isLive && !state.end && this.canMove(state.turn);
            this.board.show(
                { ...this.gameView(this.at), arrows: this.arrows },
                mayMove ? state.legal.map((move) => move.uci) : [],
            );
        }
    }

    private caption(): string {
        if (this.mode.kind !== "game") {
            return this.mode.caption;
        }
        const { state, sans, firstPly } = this.game;
        if (this.at < sans.length) {
            return this.at === 0
                ? "The start of the game"
                : `After ${numbered([sans[this.at - 1]], firstPly + this.at - 1)}`;
        }
        if (state.end) {
            return `${state.end.text} (${state.end.result})`;
        }
        return `${sideName(state.turn)} to move${state.check ? ", in check" : ""}`;
    }
}
