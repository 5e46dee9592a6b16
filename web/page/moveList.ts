// The moves of the game in short notation; each shows its position.
import { byId, html } from "./dom";
import type { Game } from "./game";
import type { Stage } from "./stage";
import { gameName } from "./words";

export class MoveList {
    private readonly list = byId("moves");

    constructor(
        private readonly game: Game,
        private readonly stage: Stage,
    ) {
        stage.shown.listen(() => this.draw());
        byId("first").addEventListener("click", () => stage.showGame(0));
        byId("previous").addEventListener("click", () => stage.showGame(stage.place - 1));
        byId("next").addEventListener("click", () => stage.showGame(stage.place + 1));
        byId("last").addEventListener("click", () => stage.showGame());
    }

    private draw(): void {
        const { sans, firstPly, tags } = this.game;
        const rows: HTMLElement[] = [];
        for (let ply = firstPly & ~1; ply < firstPly + sans.length; ply += 2) {
            const number = html("span", { class: "number" }, `${ply / 2 + 1}.`);
            rows.push(
                html("li", {}, number, this.move(ply - firstPly), this.move(ply + 1 - firstPly)),
            );
        }
        this.list.replaceChildren(...rows);
        byId("no-moves").hidden = sans.length > 0;
        byId("some-moves").hidden = sans.length === 0;
        const hasPlayers = tags.some(({ name }) => name === "White" || name === "Black");
        byId("game-name").textContent = hasPlayers ? gameName(tags) : "Moves";
        byId("result").textContent =
            this.game.state.end?.result ?? (this.game.result === "*" ? "" : this.game.result);
        this.keepInSight();
    }

    private move(index: number): HTMLElement {
        const san = this.game.sans[index];
        if (san === undefined) {
            return html("span", {}, index < 0 ? "\u2026" : "");
        }
        const isShown = index + 1 === this.stage.place;
        return html(
            "button",
            {
                type: "button",
                class: "move",
                "aria-current": isShown ? "true" : null,
                onclick: () => this.stage.showGame(index + 1),
            },
            san,
        );
    }

    // Scrolls only the list, never the page.
    private keepInSight(): void {
        const shown = this.list.querySelector<HTMLElement>("[aria-current]");
        if (shown) {
            const top = shown.offsetTop - this.list.offsetTop;
            this.list.scrollTop = top - this.list.clientHeight / 2;
        }
    }
}
