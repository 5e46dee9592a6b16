import type { Worker } from "node:worker_threads";

/** The path of kestran.js, the worker for browsers and Node.js. */
export const workerPath: string;

/**
 * Starts the engine under Node.js. It takes UCI commands by postMessage, one or more lines each,
 * and sends each line of its answers as one message. It ends after "quit".
 */
export function createEngine(): Worker;
