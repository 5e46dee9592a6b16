// The compiled engine under node. KESTRAN_BUILD is the folder of all builds, build/ if not set.
import { build } from "esbuild";
import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

export const webFolder = dirname(dirname(fileURLToPath(import.meta.url)));
export const buildFolder = process.env.KESTRAN_BUILD ?? join(webFolder, "../build");

/** A function that answers a request with all its answers, the final one last. */
export async function createEngine() {
    const script = createRequire(import.meta.url)(join(buildFolder, "web/kestran-engine.js"));
    Object.assign(globalThis, script); // engine.ts expects what a classic script declares
    const result = await build({
        entryPoints: [join(webFolder, "engine/engine.ts")], bundle: true, write: false, format: "esm",
    });
    const source = Buffer.from(result.outputFiles[0].text).toString("base64");
    const { compileModule, Engine } = await import(`data:text/javascript;base64,${source}`);
    let answers = [];
    const engine = await Engine.create(await compileModule(), (answer) => answers.push(answer));
    return (request) => {
        answers = [];
        engine.answer({ id: 1, ...request });
        return answers;
    };
}
