// kestran.js: a worker that speaks UCI by messages, one line each. It runs in browsers and under
// worker_threads of Node.js. It is bundled after the script build/web/kestran-uci.js.
//
// The search runs in an inner worker, which is the same script. As that worker hears nothing while
// it searches, a search is stopped by ending it; a new one then gets the settings and the position.
import { Session } from "./session";
import { isInner, openPort, startInner } from "./platform";
import { compileModule, createUci } from "./uciModule";
import type { FromInner, ToInner } from "./platform";

function runInner(): void {
    const port = openPort<ToInner, FromInner>();
    let ready: Promise<(line: string) => void> | undefined;
    port.receive((message) => {
        if (message.module !== undefined) {
            ready = createUci(message.module, (line) => port.send({ line }));
        } else {
            void ready?.then((handleLine) => {
                handleLine(message.command ?? "");
                port.send({ done: true });
            });
        }
    });
}

async function runOuter(): Promise<void> {
    const port = openPort<string, string>();
    const early: string[] = []; // lines that arrive before the module is compiled
    let take = (text: string): void => void early.push(text);
    port.receive((text) => take(text));
    const module = await compileModule();
    const session = new Session({
        startInner: (listener) => startInner(module, listener),
        send: (line) => port.send(line),
        close: () => port.close(),
    });
    take = (text) => String(text).split(/\r?\n/).forEach((line) => session.handleLine(line));
    early.forEach(take);
}

if (isInner()) {
    runInner();
} else {
    void runOuter();
}
