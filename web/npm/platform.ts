// Workers and their messages, in browsers and under worker_threads of Node.js.

export interface ToInner {
    module?: WebAssembly.Module; // the first message
    command?: string; // a line of UCI
}
export interface FromInner {
    line?: string; // of an answer
    done?: true; // the command is finished
}

export interface Port<In, Out> {
    receive(listener: (message: In) => void): void;
    send(message: Out): void;
    close(): void;
}

export interface InnerWorker {
    send(message: ToInner): void;
    end(): void;
}

interface NodePort {
    on(event: "message", listener: (message: never) => void): void;
    postMessage(message: unknown): void;
    close(): void;
}
interface NodeWorker extends NodePort {
    terminate(): Promise<number>;
    unref(): void;
}
interface WorkerThreads {
    parentPort: NodePort | null;
    workerData: unknown;
    Worker: new (path: string, options: object) => NodeWorker;
}
interface WebScope {
    location: { href: string };
    onmessage: ((event: { data: never }) => void) | null;
    postMessage(message: unknown): void;
    close(): void;
}

const INNER = "#inner"; // marks the address of the inner worker

declare const require: (name: string) => unknown;
declare const __filename: string;
declare const process: { versions?: { node?: string } } | undefined;

const threads =
    typeof process === "object" && process.versions?.node !== undefined
        ? (require("node:worker_threads") as WorkerThreads)
        : null;
const scope = globalThis as unknown as WebScope;

export function isInner(): boolean {
    return threads !== null ? threads.workerData === INNER : scope.location.href.endsWith(INNER);
}

/** The port to whoever has started this worker. */
export function openPort<In, Out>(): Port<In, Out> {
    const port = threads?.parentPort;
    if (port) {
        return {
            receive: (listener) => port.on("message", listener),
            send: (message) => port.postMessage(message),
            close: () => port.close(),
        };
    }
    return {
        receive(listener) {
            scope.onmessage = (event) => listener(event.data);
        },
        send: (message) => scope.postMessage(message),
        close: () => scope.close(),
    };
}

export function startInner(
    module: WebAssembly.Module,
    listener: (message: FromInner) => void,
): InnerWorker {
    const inner = threads !== null ? startNodeWorker(threads, listener) : startWebWorker(listener);
    inner.send({ module });
    return inner;
}

function startNodeWorker(
    { Worker }: WorkerThreads,
    listener: (message: FromInner) => void,
): InnerWorker {
    const worker = new Worker(__filename, { workerData: INNER });
    worker.on("message", listener);
    return { send: (message) => worker.postMessage(message), end: () => void worker.terminate() };
}

function startWebWorker(listener: (message: FromInner) => void): InnerWorker {
    const worker = new globalThis.Worker(scope.location.href + INNER);
    worker.onmessage = (event: { data: FromInner }) => listener(event.data);
    return { send: (message) => worker.postMessage(message), end: () => worker.terminate() };
}
