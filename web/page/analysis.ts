// Searches the position on the board without a limit, until it is stopped.
import { byId } from "./dom";
import { Client, Stopped } from "./engine";
import type { Game } from "./game";
import type { Pass, SearchDone } from "./protocol";
import type { Stage } from "./stage";
import type { Thinking } from "./thinking";

export class Analysis {
    private running = false;
    private run = 0; // the number of the latest one
    private readonly toggle = byId<HTMLButtonElement>("analyse");

    constructor(
        private readonly client: Client,
        private readonly game: Game,
        private readonly stage: Stage,
        private readonly thinking: Thinking,
    ) {
        this.toggle.addEventListener("click", () =>
            this.running ? this.stop() : void this.start(),
        );
        stage.shown.listen(() => {
            if (this.running) {
                this.stop();
                void this.start();
            }
        });
    }

    stop(): void {
        if (this.running) {
            this.client.stop();
            this.setRunning(false);
        }
    }

    private setRunning(running: boolean): void {
        this.running = running;
        this.toggle.textContent = running ? "Stop" : "Analyse the position on the board";
    }

    async start(): Promise<void> {
        this.client.stop();
        const run = ++this.run;
        const at = this.stage.place;
        const turn = this.game.turnAfter(at);
        this.setRunning(true);
        this.thinking.begin({
            whiteToMove: turn === "w",
            ply: this.game.firstPly + at,
            title: "Analysis of the position on the board",
        });
        try {
            await this.client.ask<SearchDone, Pass>(
                { type: "search", ...this.game.upTo(at), limits: {}, useBook: false },
                (pass) => {
                    this.thinking.add(pass);
                    if (this.stage.place === at) {
                        this.stage.point(this.thinking.arrows());
                    }
                },
            );
        } catch (error) {
            if (!(error instanceof Stopped)) {
                throw error;
            }
        } finally {
            if (run === this.run) {
                this.setRunning(false);
            }
        }
    }
}
