// node tests/speed.mjs: nodes a second of the compiled engine beside those of the native
// build/release/kestran-bench, and moves a second while all are recorded.
import { execFileSync } from "node:child_process";
import { join } from "node:path";
import { buildFolder, createEngine } from "./compiled.mjs";

const DEPTH = 4;
const RECORD_DEPTH = 3;
const ask = await createEngine();
const bench = join(buildFolder, "release/kestran-bench");
const words = ["--json", "--depth", String(DEPTH)];
const { positions } = JSON.parse(execFileSync(bench, words, { encoding: "utf8" }));

// Nodes a second over the last passes of the answers to a request for each position.
function rateOf(request) {
    let [nodes, time] = [0, 0];
    for (const { fen } of positions) {
        const passes = ask({ fen, moves: [], ...request }).filter(({ type }) => type === "pass");
        nodes += passes[passes.length - 1].nodes;
        time += passes[passes.length - 1].time;
    }
    return (1000 * nodes) / time;
}

const sum = (key) => positions.reduce((total, position) => total + position[key], 0);
const native = (1000 * sum("nodes")) / sum("millis");
rateOf({ type: "search", limits: { depth: 3 } }); // the compiler of the browser warms up
const compiled = rateOf({ type: "search", limits: { depth: DEPTH } });
const recorded = rateOf({ type: "record", depth: RECORD_DEPTH });
const millions = (rate) => `${(rate / 1e6).toFixed(1)} M`;
console.log(`native       ${millions(native)} nodes/s`);
console.log(`WebAssembly  ${millions(compiled)} nodes/s, ${((100 * compiled) / native).toFixed(0)} %`);
console.log(`recorded     ${millions(recorded)} moves/s`);
