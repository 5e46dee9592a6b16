"use strict";
// Starts the engine as a worker under Node.js. Browsers load kestran.js as a worker themselves.
const { join } = require("node:path");
const { Worker } = require("node:worker_threads");

const workerPath = join(__dirname, "kestran.js");

exports.workerPath = workerPath;
exports.createEngine = () => new Worker(workerPath);
