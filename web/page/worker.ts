// The dedicated worker that holds the engine. protocol.ts describes its messages.
import { compileModule, Engine } from "../engine/engine";
import type { Asked, Ready, Start } from "./protocol";

interface WorkerScope {
    onmessage: ((event: { data: Start | Asked }) => void) | null;
    postMessage(message: unknown, transfer: Transferable[]): void;
}
const scope = self as unknown as WorkerScope;

let engine: Promise<Engine> | undefined;

async function start(compiled: WebAssembly.Module | undefined): Promise<Engine> {
    const module = compiled ?? (await compileModule());
    const created = await Engine.create(module, (answer, buffers) => {
        scope.postMessage(answer, buffers);
    });
    const ready: Ready = { type: "ready", module };
    scope.postMessage(ready, []);
    return created;
}

scope.onmessage = ({ data }) => {
    if (data.type === "start") {
        engine = start(data.module);
    } else {
        // Requests that arrive before the engine is ready wait for it, in their order.
        void engine?.then((ready) => ready.answer(data));
    }
};
