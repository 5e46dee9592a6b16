// Talks to the engine, which runs in workers made from a text inside the page.
import type { Answered, Asked, Failure, Ready, Request, Start } from "./protocol";

// A request that the engine refused, or that a stop ended.
export class Refused extends Error {
    constructor(readonly failure: Failure) {
        super(failure.message);
    }
}

export class Stopped extends Error {}

interface Waiting {
    onProgress: (answer: Answered) => void;
    resolve: (answer: Answered) => void;
    reject: (error: Error) => void;
}

// What all workers share: the text, and the module once the first worker has compiled it.
export class Engine {
    private readonly url: string;
    private first: Promise<Ready> | null = null;

    constructor(workerText: string) {
        this.url = URL.createObjectURL(new Blob([workerText], { type: "text/javascript" }));
    }

    // Starts a worker. Only the first one compiles the module.
    async start(): Promise<Worker> {
        const worker = new Worker(this.url);
        if (this.first) {
            await startWorker(worker, (await this.first).module);
        } else {
            this.first = startWorker(worker);
            await this.first;
        }
        return worker;
    }
}

function startWorker(worker: Worker, module?: WebAssembly.Module): Promise<Ready> {
    return new Promise((resolve, reject) => {
        worker.onmessage = (event) => {
            const answer = event.data as Ready | Failure;
            if (answer.type === "ready") {
                resolve(answer);
            } else {
                reject(new Error(answer.message));
            }
        };
        worker.onerror = (event) => reject(new Error(event.message));
        const start: Start = module ? { type: "start", module } : { type: "start" };
        worker.postMessage(start);
    });
}

// One worker, which handles one request after the other.
export class Client {
    private worker: Promise<Worker> | null = null;
    private readonly waiting = new Map<number, Waiting>();
    private lastId = 0;

    constructor(private readonly engine: Engine) {}

    get busy(): boolean {
        return this.waiting.size > 0;
    }

    // Resolves to the final answer of type `Done`; progress answers go to the callback.
    async ask<Done, Progress = never>(
        request: Request,
        onProgress: (answer: Progress) => void = () => {},
    ): Promise<Done> {
        const id = ++this.lastId;
        const answer = new Promise<Answered>((resolve, reject) => {
            this.waiting.set(id, {
                onProgress: onProgress as (answer: Answered) => void,
                resolve,
                reject,
            });
        });
        answer.catch(() => {}); // a stop may come before the worker has started
        this.worker ??= this.startWorker();
        const worker = await this.worker;
        if (this.waiting.has(id)) {
            const asked: Asked = { id, ...request };
            worker.postMessage(asked);
        }
        return (await answer) as unknown as Done;
    }

    // Ends all requests at once. The next one starts a new worker.
    stop(): void {
        if (!this.busy) {
            return;
        }
        void this.worker?.then((worker) => worker.terminate());
        this.worker = this.startWorker();
        const ended = [...this.waiting.values()];
        this.waiting.clear();
        for (const waiting of ended) {
            waiting.reject(new Stopped("stopped"));
        }
    }

    private async startWorker(): Promise<Worker> {
        const worker = await this.engine.start();
        worker.onmessage = (event) => this.receive(event.data as Answered);
        worker.onerror = (event) => this.fail(event.message);
        return worker;
    }

    private receive(answer: Answered): void {
        const waiting = this.waiting.get(answer.id);
        if (!waiting) {
            return;
        }
        if (answer.type === "done") {
            this.waiting.delete(answer.id);
            waiting.resolve(answer);
        } else if (answer.type === "error") {
            this.waiting.delete(answer.id);
            waiting.reject(new Refused(answer));
        } else {
            waiting.onProgress(answer);
        }
    }

    // A worker that has failed is of no further use.
    private fail(message: string): void {
        const ended = [...this.waiting.values()];
        this.waiting.clear();
        void this.worker?.then((worker) => worker.terminate());
        this.worker = null;
        for (const waiting of ended) {
            waiting.reject(new Error(message));
        }
    }
}
