// The UCI session: passes lines on to the inner worker, and answers what that cannot hear.
import type { FromInner, InnerWorker } from "./platform";

export interface SessionHost {
    startInner(listener: (message: FromInner) => void): InnerWorker;
    send(line: string): void;
    close(): void;
}

export class Session {
    private inner!: InnerWorker;
    private readonly options = new Map<string, string>(); // the last line of each option
    private position = "position startpos";
    private pending = 0; // lines that the inner worker has not finished
    private go: string | null = null; // the search under way
    private bestLine: string[] = []; // of its last finished pass
    private readonly waiting: string[] = []; // lines that came during the search

    constructor(private readonly host: SessionHost) {
        this.restart();
    }

    handleLine(line: string): void {
        const word = line.trim().split(/\s+/)[0] ?? "";
        if (word === "quit") {
            this.inner.end();
            this.host.close();
        } else if (this.go === null) {
            this.pass(word, line);
        } else if (word === "stop") {
            this.stop();
        } else if (word === "ponderhit") {
            this.startClock();
        } else if (word === "isready") {
            this.host.send("readyok");
        } else {
            this.waiting.push(line);
        }
    }

    // Passes a line on. No search is under way.
    private pass(word: string, line: string): void {
        if (word === "setoption") {
            this.options.set(/\bname\s+(.*?)(\s+value\b|\s*$)/i.exec(line)?.[1]?.toLowerCase() ?? "", line);
        } else if (word === "position") {
            this.position = line;
        } else if (word === "go") {
            this.go = line;
            this.bestLine = [];
        } else if (word === "stop" || word === "ponderhit") {
            return; // no search to stop
        }
        this.command(line);
    }

    private command(line: string): void {
        ++this.pending;
        this.inner.send({ command: line });
    }

    // Ends the inner worker and starts another one with the same settings and position.
    private restart(): void {
        this.inner?.end();
        this.pending = 0;
        const inner = this.host.startInner((message) => {
            if (inner === this.inner) { // a worker that was ended may still be heard
                this.hear(message);
            }
        });
        this.inner = inner;
        for (const line of [...this.options.values(), this.position]) {
            this.command(line);
        }
    }

    private hear(message: FromInner): void {
        if (message.line !== undefined) {
            this.note(message.line);
            this.host.send(message.line);
        } else if (--this.pending === 0) {
            this.endSearch();
        }
    }

    private note(line: string): void {
        const isBest = !/ multipv (?!1 )/.test(line);
        const moves = / pv (.+)$/.exec(line)?.[1];
        if (line.startsWith("info ") && isBest && moves !== undefined) {
            this.bestLine = moves.trim().split(/\s+/);
        }
    }

    private stop(): void {
        const go = this.go ?? "";
        this.restart();
        const [best, reply] = this.bestLine;
        if (best === undefined) {
            // No pass has ended: a search that is over at once.
            const moves = / searchmoves .*/.exec(go)?.[0] ?? "";
            this.command(`go depth 1${moves}`);
        } else {
            this.host.send(`bestmove ${best}${reply === undefined ? "" : ` ponder ${reply}`}`);
            this.endSearch();
        }
    }

    // The move that was pondered on has been played: the search starts again with its clock.
    private startClock(): void {
        const go = (this.go ?? "go").replace(/\s+ponder\b/, "");
        this.restart();
        this.go = go;
        this.command(go);
    }

    private endSearch(): void {
        this.go = null;
        while (this.waiting.length > 0 && this.go === null) {
            this.handleLine(this.waiting.shift() ?? "");
        }
    }
}
