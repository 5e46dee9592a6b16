// Positions and games by paste, drop and file, and out again.
import { byId, html } from "./dom";
import { Client, Refused } from "./engine";
import type { Game } from "./game";
import type { PgnDone, PgnGame, PositionDone, TextDone } from "./protocol";
import { countText, gameName } from "./words";

const MOST_LISTED = 500; // games of a file

export class Files {
    // Before a game is opened. A position is played by the side to move, a game by both.
    onTake: (person: "w" | "b" | "both") => void = () => {};
    onState: (text: string) => void = () => {};
    private readonly dialog = byId<HTMLDialogElement>("open-dialog");
    private readonly text = byId<HTMLTextAreaElement>("open-text");

    constructor(
        private readonly rules: Client,
        private readonly game: Game,
    ) {
        byId("open").addEventListener("click", () => this.show());
        byId("open-cancel").addEventListener("click", () => this.dialog.close());
        byId("open-load").addEventListener("click", () => void this.load(this.text.value));
        byId<HTMLInputElement>("open-file").addEventListener("change", (event) => {
            void this.loadFile((event.target as HTMLInputElement).files?.[0]);
        });
        byId("copy-fen").addEventListener("click", () => void this.copy(this.fen(), "FEN"));
        byId("copy-pgn").addEventListener(
            "click",
            () => void this.pgn().then((pgn) => this.copy(pgn, "PGN")),
        );
        byId("save-pgn").addEventListener(
            "click",
            () => void this.pgn().then((pgn) => saveText(pgn, "kestran.pgn")),
        );
        document.addEventListener("dragover", (event) => event.preventDefault());
        document.addEventListener("drop", (event) => this.onDrop(event));
    }

    show(): void {
        this.fail("");
        byId("open-games").replaceChildren();
        this.dialog.showModal();
        this.text.focus();
    }

    // The position on the board after the last move.
    fen(): string {
        const { fens } = this.game.state;
        return fens[fens.length - 1];
    }

    async pgn(): Promise<string> {
        const { game } = this;
        const result = game.state.end?.result ?? game.result;
        const all = game.upTo(game.moves.length);
        return (
            await this.rules.ask<TextDone>({ type: "writePgn", ...all, tags: game.tags, result })
        ).text;
    }

    private onDrop(event: DragEvent): void {
        event.preventDefault();
        const file = event.dataTransfer?.files[0];
        const text = event.dataTransfer?.getData("text");
        if (!this.dialog.open) {
            this.show();
        }
        if (file) {
            void this.loadFile(file);
        } else if (text) {
            this.text.value = text;
            void this.load(text);
        }
    }

    private async loadFile(file: File | undefined): Promise<void> {
        if (file) {
            const text = await file.text();
            this.text.value = text.length < 100_000 ? text : "";
            await this.load(text);
        }
    }

    // A text is a PGN if it has a tag or more than a line; otherwise a FEN.
    async load(text: string): Promise<void> {
        const trimmed = text.trim();
        this.fail("");
        byId("open-games").replaceChildren();
        try {
            if (/^[^[\]\n]*\/[^[\]\n]*$/.test(trimmed)) {
                const { turn } = await this.rules.ask<PositionDone>({
                    type: "position",
                    fen: trimmed,
                    moves: [],
                });
                await this.take({ fen: trimmed, moves: [], tags: [], result: "*" }, turn);
            } else {
                await this.choose(
                    await this.rules.ask<PgnDone>({ type: "readPgn", text, most: MOST_LISTED }),
                );
            }
        } catch (error) {
            this.fail(
                error instanceof Refused ? place(error) : `It cannot be read: ${String(error)}`,
            );
        }
    }

    private async choose({ games, count }: PgnDone): Promise<void> {
        if (games.length === 0) {
            this.fail("There is no game in this text.");
        } else if (games.length === 1) {
            await this.take(games[0]);
        } else {
            const items = games.map((game) =>
                html(
                    "li",
                    {},
                    html(
                        "button",
                        { type: "button", class: "plain", onclick: () => void this.take(game) },
                        gameName(game.tags),
                    ),
                ),
            );
            byId("open-games").replaceChildren(
                html(
                    "p",
                    {},
                    `${countText(count)} games. Choose one${count > games.length ? ` of the first ${games.length}` : ""}:`,
                ),
                html("ul", {}, ...items),
            );
        }
    }

    private async take(
        game: Omit<PgnGame, "texts">,
        person: "w" | "b" | "both" = "both",
    ): Promise<void> {
        this.onTake(person);
        await this.game.load(game.fen, game.moves, game.tags, game.result);
        this.close();
    }

    private close(): void {
        this.dialog.close();
        this.text.value = "";
    }

    private fail(text: string): void {
        byId("open-error").textContent = text;
    }

    // Where the browser does not allow copying, the text is shown, selected.
    private async copy(text: string, name: string): Promise<void> {
        try {
            await navigator.clipboard.writeText(text);
            this.onState(`${name} copied`);
        } catch {
            this.show();
            this.text.value = text;
            this.text.select();
        }
    }
}

function place(error: Refused): string {
    const { line, column, message } = error.failure;
    return line === undefined ? message : `Line ${line}, column ${column ?? 1}: ${message}`;
}

export function saveText(text: string, name: string): void {
    const link = html("a", {
        href: URL.createObjectURL(new Blob([text], { type: "application/x-chess-pgn" })),
        download: name,
    });
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 1000);
}
