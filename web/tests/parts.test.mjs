// The parts of the page that need no browser.
import assert from "node:assert/strict";
import { test } from "node:test";
import { fileURLToPath } from "node:url";
import { Chess } from "chess.js";
import { build } from "esbuild";

async function load(name) {
    const entry = fileURLToPath(new URL(`../page/${name}.ts`, import.meta.url));
    const { outputFiles } = await build({
        entryPoints: [entry],
        bundle: true,
        write: false,
        format: "esm",
    });
    return await import(
        `data:text/javascript;base64,${Buffer.from(outputFiles[0].text).toString("base64")}`
    );
}

// Small, and the same in each run.
function randomNumbers(seed) {
    return (below) => {
        seed = (seed * 1103515245 + 12345) % 2 ** 31;
        return Math.floor(seed / 65536) % below;
    };
}

test("placements after moves agree with chess.js, special moves included", async () => {
    const { afterStep, parseStep, placementOf } = await load("placement");
    const random = randomNumbers(11);
    const seen = new Set();
    for (let i = 0; i < 30; ++i) {
        const game = new Chess(
            i % 2 ? "r3k2r/pPp2ppp/8/3pP3/3Pp3/8/P1P2PpP/R3K2R w KQkq d6 0 1" : undefined,
        );
        while (game.moves().length > 0 && game.moveNumber() < 30) {
            const moves = game.moves();
            const move = game.move(moves[random(moves.length)]);
            const expected = placementOf(move.after);
            assert.equal(
                afterStep(placementOf(move.before), parseStep(move.lan)),
                expected,
                `${move.before} ${move.lan}`,
            );
            [...move.flags].forEach((flag) => seen.add(flag));
        }
    }
    assert.deepEqual(
        ["e", "k", "p", "q"].filter((flag) => !seen.has(flag)),
        [],
        "all special moves occurred",
    );
});

test("scores of records in words", async () => {
    const { forWhite, toScore } = await load("words");
    const mated = -2147483448;
    const cases = [
        [310, "+0.31"],
        [-4, "+0.00"],
        [-1500, "\u22121.50"],
        [-mated - 1, "White mates in 1"],
        [-mated - 5, "White mates in 3"],
        [mated + 4, "Black mates in 2"],
    ];
    for (const [value, text] of cases) {
        assert.equal(forWhite(toScore(value), true), text, value);
    }
    assert.equal(forWhite(toScore(mated), false), "White has mated");
    assert.equal(toScore(2147483548), null);
});

test("a tree finds its records by parent, ply and place", async () => {
    const { SearchTree } = await load("searchTree");
    const random = randomNumbers(3);
    // Parents in search order: each record is a child of a record on the path to the one before.
    const parents = [];
    for (let index = 0; index < 5000; ++index) {
        let parent = index - 1;
        for (let up = random(4); up > 0 && parent >= 0; --up) {
            parent = parents[parent];
        }
        parents.push(Math.max(-1, parent));
    }
    const data = new DataView(new ArrayBuffer(20 * parents.length));
    parents.forEach((parent, index) =>
        data.setUint32(20 * index, parent < 0 ? 0xffffffff : parent, true),
    );
    const tree = await SearchTree.build({ data: data.buffer, hasQuiscence: true, plies: 99 });
    const ancestors = parents.map((parent, index) => {
        const path = [index];
        while (parents[path[0]] >= 0) {
            path.unshift(parents[path[0]]);
        }
        return path;
    });
    const sizes = new Array(parents.length).fill(0);
    ancestors.flat().forEach((ancestor) => ++sizes[ancestor]);
    assert.ok(tree.size.join() === sizes.join());
    ancestors.forEach((path, index) => assert.deepEqual(tree.path(index), path));
    assert.equal(tree.levels.flatMap((level) => [...level]).length, parents.length);
    for (const place of [0, 1, 17, 999.5, 2500, 4999]) {
        tree.levels.forEach((level, ply) => {
            const expected = [...level].findIndex((record) => record + sizes[record] > place);
            assert.equal(
                tree.locate(ply, place),
                expected < 0 ? level.length : expected,
                `ply ${ply}, place ${place}`,
            );
            assert.equal(
                tree.locate(ply, place, Math.min(3, level.length)),
                Math.max(Math.min(3, level.length), expected < 0 ? level.length : expected),
            );
        });
    }
    assert.equal(
        tree.children(-1).join(),
        parents.flatMap((parent, index) => (parent < 0 ? [index] : [])).join(),
    );
});
