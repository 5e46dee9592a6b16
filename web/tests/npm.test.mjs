// The npm package, installed from the packed file into an empty folder without a network: a UCI
// conversation under node and in Chromium.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";
import { buildFolder } from "./compiled.mjs";

const folder = mkdtempSync(join(tmpdir(), "kestran-npm-"));
after(() => rmSync(folder, { recursive: true }));

function npm(...words) {
    execFileSync("npm", [...words, "--offline", "--no-audit", "--no-fund"], { cwd: folder, stdio: "pipe" });
}

npm("pack", join(buildFolder, "web/npm"));
const [packed] = readdirSync(folder);
writeFileSync(join(folder, "package.json"), "{}");
npm("install", `./${packed}`);
const installed = join(folder, "node_modules/kestran");

// Sends lines and collects those of the answers up to one that matches `end`.
function talk(engine, lines, end) {
    return new Promise((resolve, reject) => {
        const answers = [];
        const timer = setTimeout(() => reject(new Error(`no ${end} after ${answers.join("\n")}`)), 60000);
        engine.listen((line) => {
            answers.push(line);
            if (line.match(end)) {
                clearTimeout(timer);
                resolve(answers);
            }
        });
        lines.forEach((line) => engine.send(line));
    });
}

// The same conversation for every kind of worker.
async function converse(engine) {
    const greeting = await talk(engine, ["uci"], "uciok");
    assert.match(greeting.join("\n"), /^id name Kestran[^]*option name Threads type spin/);
    assert.deepEqual(await talk(engine, ["isready"], "readyok"), ["readyok"]);

    // The same search as natively: depth 4 of the start position.
    const searched = await talk(engine, ["position startpos", "go depth 4"], "bestmove");
    const reports = searched.filter((line) => line.startsWith("info depth"));
    assert.match(reports[reports.length - 1], / nodes 248752 /);
    assert.match(searched[searched.length - 1], /^bestmove e2e4/);

    // A stop during a search gives the move of the last finished pass.
    engine.send("setoption name MultiPV value 2");
    const begun = await talk(engine, ["position startpos moves e2e4", "go infinite"], "depth 3 .*multipv 2");
    const time = performance.now();
    const stopped = await talk(engine, ["isready", "stop"], "bestmove");
    assert.ok(performance.now() - time < 1000);
    const lines = [...begun, ...stopped].filter((line) => / multipv 1 .* pv /.test(line));
    const best = / pv (\S+)/.exec(lines[lines.length - 1])[1];
    assert.equal(stopped[stopped.length - 1].split(" ")[1], best);

    // The game goes on, with the settings from before.
    const next = await talk(engine, ["position fen 7k/5Q2/6K1/8/8/8/8/8 w - - 0 1", "go depth 3"], "bestmove");
    assert.match(next[next.length - 1], /^bestmove (f7g7|f7f8|f7h7)/);
    assert.ok(next.some((line) => / multipv 2 /.test(line)));
    const budget = performance.now();
    await talk(engine, ["position startpos", "go movetime 300"], "bestmove");
    assert.ok(performance.now() - budget < 3000);
    // Pondering: a hit starts the clock.
    await talk(engine, ["position startpos moves d2d4", "go ponder movetime 200"], "info depth 2");
    await talk(engine, ["ponderhit"], "bestmove");
}

test("speaks UCI under node", async () => {
    const { createEngine } = createRequire(join(folder, "x.js"))("kestran");
    const worker = createEngine();
    let listener = () => {};
    worker.on("message", (line) => listener(line));
    const exit = new Promise((resolve) => worker.on("exit", resolve));
    try {
        await converse({ listen: (to) => (listener = to), send: (line) => worker.postMessage(line) });
        worker.postMessage("quit");
        assert.equal(await exit, 0);
    } finally {
        await worker.terminate(); // a test that has failed ends, too
    }
});

test("speaks UCI in Chromium", async () => {
    const { Builder } = await import("selenium-webdriver");
    const chrome = await import("selenium-webdriver/chrome.js");
    const server = createServer((request, response) => {
        const isScript = request.url === "/kestran.js";
        response.setHeader("Content-Type", isScript ? "text/javascript" : "text/html");
        response.end(isScript ? readFileSync(join(installed, "kestran.js")) : "<!DOCTYPE html><title>x</title>");
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    const options = new chrome.Options().addArguments("--headless=new", "--no-sandbox");
    const service = new chrome.ServiceBuilder("/usr/bin/chromedriver");
    const driver = await new Builder().forBrowser("chrome").setChromeOptions(options)
        .setChromeService(service).build();
    try {
        await driver.get(`http://127.0.0.1:${server.address().port}/`);
        await driver.executeScript(`
            window.lines = [];
            window.engine = new Worker("kestran.js");
            engine.onmessage = ({ data }) => lines.push(data);`);
        let listener = () => {};
        let isOver = false;
        const poll = (async () => {
            while (!isOver) {
                (await driver.executeScript("return lines.splice(0)")).forEach((line) => listener(line));
                await new Promise((resolve) => setTimeout(resolve, 20));
            }
        })();
        const send = (line) => void driver.executeScript("engine.postMessage(arguments[0])", line);
        await converse({ listen: (to) => (listener = to), send });
        isOver = true;
        await poll;
    } finally {
        await driver.quit();
        server.close();
    }
});
