// The compiled engine against the native one, and its answers to good and bad requests.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { buildFolder, createEngine, webFolder } from "./compiled.mjs";

const SIGNATURE = 5712333;
const ask = await createEngine();
const passesOf = (answers) => answers.filter(({ type }) => type === "pass");
const last = (answers) => answers[answers.length - 1];
const textOf = (moves) => moves.map(({ uci }) => uci).join(" ");

// Halves are rounded away from zero.
function rounded(number) {
    return Math.sign(number) * Math.round(Math.abs(number)) || 0;
}

test("searches the bench as the native engine does", () => {
    const bench = join(buildFolder, "release/kestran-bench");
    const { positions } = JSON.parse(execFileSync(bench, ["--json"], { encoding: "utf8" }));
    let signature = 0;
    for (const { fen, depth, nodes, score, best } of positions) {
        const answers = ask({ type: "search", fen, moves: [], limits: { depth } });
        const pass = last(passesOf(answers));
        signature += pass.nodes;
        assert.equal(pass.nodes, nodes, fen);
        assert.equal(last(answers).best.uci, best, fen);
        assert.deepEqual(pass.score, toScore(score), fen);
    }
    assert.equal(signature, SIGNATURE);
});

// A score of the search as the page gets it.
function toScore(evaluation) {
    const plies = 2147483448 - Math.abs(evaluation);
    return plies < 100
        ? { mate: Math.sign(evaluation) * Math.ceil(plies / 2) }
        : { cp: rounded(evaluation / 10) };
}

// The first ten positions of the file that the native engine is checked with.
function readFingerprint() {
    const text = readFileSync(join(webFolder, "../tests/data/fingerprint.txt"), "utf8");
    const blocks = [];
    for (const line of text.split("\n")) {
        const game = /^position (startpos moves )?(.*)/.exec(line);
        if (game !== null) {
            const moves = game[1] === undefined ? [] : game[2].split(" ");
            blocks.push({ fen: game[1] === undefined ? game[2] : "startpos", moves, passes: [] });
        } else if (line.startsWith("pass ")) {
            blocks[blocks.length - 1].passes.push(line);
        }
    }
    return blocks.slice(0, 10);
}

test("repeats every pass of ten fingerprint positions", () => {
    const OUTCOMES = { FAILLOW: "failed low", FAILHIGH: "failed high" };
    let count = 0;
    for (const { fen, moves, passes } of readFingerprint()) {
        const words = passes.map((line) => line.split(" "));
        const depth = Math.max(...words.map((word) => Number(word[1])));
        const searched = passesOf(ask({ type: "search", fen, moves, limits: { depth } }));
        words.forEach((word, i) => {
            const [result, evaluation, nodes] = [word[3], Number(word[9]), Number(word[11])];
            const pass = searched[i];
            assert.equal(pass.depth, Number(word[1]));
            assert.equal(pass.outcome, OUTCOMES[result] ?? "good");
            assert.equal(pass.nodes, nodes, fen);
            assert.deepEqual(pass.score, toScore(evaluation), fen);
            if (pass.outcome === "good") {
                assert.equal(textOf(pass.line), word.slice(15).join(" "), fen);
            }
            ++count;
        });
    }
    assert.ok(count >= 20, `${count} passes`);
});

test("obeys the limits of a search", () => {
    const search = (rest) => ask({ type: "search", fen: "startpos", moves: [], limits: {}, ...rest });
    const nodesOf = (answers) => last(passesOf(answers)).nodes;
    assert.ok(nodesOf(search({ limits: { nodes: 50000 } })) <= 50000);
    assert.ok(nodesOf(search({ elo: 700 })) <= 300);
    assert.deepEqual(last(search({ rootMoves: ["h2h4"], limits: { depth: 2 } })).best.uci, "h2h4");
    assert.equal(last(search({ useBook: true })).fromBook, true);
    const start = performance.now();
    const answers = search({ limits: { time: 200 } });
    const duration = performance.now() - start;
    assert.ok(duration >= 190 && duration < 2000, `${duration} ms`); // clocks differ by some ms
    assert.ok(last(answers).best !== null);
    const { levels, endings, version } = last(ask({ type: "about" }));
    assert.ok(levels.length >= 5 && levels.every((level, i) => i === 0 || level > levels[i - 1]));
    assert.ok(endings.length === 13 && version !== "");
});

test("records every move of a pass, or says what is missing", () => {
    const passes = passesOf(ask({ type: "record", fen: "startpos", moves: [], depth: 4 }));
    assert.equal(passes.length, 4);
    for (const { passNodes, depth, records } of passes) {
        assert.equal(records.data.byteLength, 20 * passNodes);
        assert.equal(records.hasQuiscence, true);
        assert.equal(records.plies, depth);
    }
});

test("explains why a move is not played", () => {
    const moves = ["e2e4", "e7e5"];
    const why = last(ask({ type: "why", fen: "startpos", moves, line: ["d1h5"], depth: 3 }));
    assert.match(why.verdict, /^It prefers 2\. .* to 2\. Qh5/);
    assert.equal(why.ply, 0);
    assert.equal(why.refutationPly, 1);
    assert.ok(why.refutation.length > 0);
});

test("plays a game through and knows how it has ended", () => {
    const mate = last(ask({ type: "position", fen: "startpos", moves: ["f2f3", "e7e5", "g2g4", "d8h4"] }));
    assert.deepEqual([mate.end.result, mate.end.reason, mate.moves[3].san], ["0-1", "checkmate", "Qh4#"]);
    assert.equal(mate.fens.length, 5);
    assert.equal(mate.legal.length, 0);
    const round = ["g1f3", "g8f6", "f3g1", "f6g8"];
    const thrice = { type: "position", fen: "startpos", moves: [...round, ...round] };
    assert.equal(last(ask(thrice)).end.reason, "repetition");
    const bare = { type: "position", fen: "8/8/4k3/8/8/3BK3/8/8 b - - 0 9", moves: [] };
    assert.equal(last(ask(bare)).end.reason, "material");
    const clock = { type: "position", fen: "8/8/4k3/8/8/3QK3/8/8 b - - 100 90", moves: [] };
    assert.equal(last(ask(clock)).end.reason, "fifty moves");
    const stuck = { type: "position", fen: "7k/5Q2/8/8/8/8/8/K7 b - - 0 9", moves: [] };
    assert.equal(last(ask(stuck)).end.reason, "stalemate");
});

test("reads and writes PGN, and says where it is wrong", () => {
    const text = '[White "<b>\\"A\\""]\n\n1. e4 {so} e5 2. Nf3 *\n\n[White "B"]\n\n1. d4 1-0\n';
    const { games } = last(ask({ type: "readPgn", text }));
    assert.equal(games.length, 2);
    assert.equal(games[0].tags[0].value, '<b>"A"');
    assert.equal(textOf(games[0].texts), "e2e4 e7e5 g1f3");
    const { fen, moves, tags, result } = games[0];
    const written = last(ask({ type: "writePgn", fen, moves, tags, result, comments: ["good"] })).text;
    assert.match(written, /\[White "<b>\\"A\\""\][^]*1\. e4 \{good\} 1?\.* ?e5 2\. Nf3 \*/);
    const fault = last(ask({ type: "readPgn", text: "1. e4 e5\n2. Ke3 *" }));
    assert.deepEqual([fault.type, fault.line, fault.column], ["error", 2, 4]);
});

test("reviews a game", () => {
    const pgn = "1. e4 e5 2. Qh5 Nc6 3. Qg5 Qxg5 0-1";
    const answers = ask({ type: "review", pgn, game: 0, nodes: 5000 });
    assert.deepEqual(answers.slice(0, -1).map(({ ply }) => ply), [0, 1, 2, 3, 4, 5]);
    const { costliest, pgn: annotated } = last(answers);
    assert.equal(costliest[0].move.san, "Qg5");
    assert.ok(costliest[0].cost > 500);
    assert.equal(costliest[0].refutation[0].san, "Qxg5");
    assert.match(annotated, /Refutation: 3\.\.\. Qxg5/);
    assert.equal(last(ask({ type: "readPgn", text: annotated })).games[0].moves.length, 6);
});

test("refuses what cannot be answered, and goes on", () => {
    const start = { fen: "startpos", moves: [] };
    const bad = [
        { type: "nothing" }, { type: "position", fen: "x", moves: [] }, { type: "position", moves: [] },
        { type: "position", fen: "startpos", moves: ["e2e5"] }, { type: "position", fen: 7, moves: [] },
        { type: "why", ...start, line: [], depth: 3 }, { type: "why", ...start, line: ["e2e5"], depth: 3 },
        { type: "review", pgn: "", game: 0, nodes: 1 }, { type: "search", ...start, limits: "deep" },
        { type: "search", ...start, limits: {}, rootMoves: ["a1a8"] },
    ];
    for (const request of bad) {
        const answers = ask(request);
        assert.equal(answers.length, 1);
        assert.equal(answers[0].type, "error", JSON.stringify(request));
        assert.ok(answers[0].message.length > 0);
    }
    assert.equal(last(ask({ type: "position", ...start })).legal.length, 20);
});
