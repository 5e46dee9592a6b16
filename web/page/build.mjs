// Builds kestran.html, one file with everything inside.
//
//     node page/build.mjs --engine kestran-engine.js --out kestran.html
import { build } from "esbuild";
import { createHash } from "node:crypto";
import { readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { parseArgs } from "node:util";

const page = dirname(fileURLToPath(import.meta.url));
const { values } = parseArgs({ options: { engine: { type: "string" }, out: { type: "string" } } });
const MOST_BYTES = 1_500_000;

async function bundle(entry) {
    const result = await build({
        absWorkingDir: page,
        entryPoints: [entry],
        bundle: true,
        minify: true,
        write: false,
        metafile: true,
        format: "iife",
        target: "es2021",
        charset: "utf8",
        legalComments: "none",
    });
    return { text: result.outputFiles[0].text.trim(), inputs: Object.keys(result.metafile.inputs) };
}

// Text that can be inside <script> without ending it.
function inScript(text) {
    return text.replace(/<(?=\/script|!--)/gi, "\\x3c");
}

function jsonInScript(value) {
    return JSON.stringify(value).replace(/</g, "\\u003c");
}

function escaped(text) {
    return text.replace(/&/g, "&amp;").replace(/</g, "&lt;");
}

function hash(text) {
    return `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
}

// The licences of all that is inside, which must name each package that the inputs come from.
async function licences(inputs) {
    const text = await readFile(join(page, "../../packaging/copyright"), "utf8");
    const names = new Set(text.split(/\s+/));
    for (const input of inputs) {
        const name = /node_modules\/((?:@[^/]+\/)?[^/]+)/.exec(input)?.[1];
        if (name !== undefined && !names.has(name)) {
            throw new Error(`packaging/copyright does not name ${name}`);
        }
    }
    return escaped(text);
}

// `parts` by the name of their place, {{name}}. The replacement is literal.
function fill(template, parts) {
    return template.replace(/\{\{(\w+)\}\}/g, (_, name) => parts[name]);
}

const [script, worker, style] = await Promise.all([
    bundle("main.ts"),
    bundle("worker.ts"),
    bundle("style.css"),
]);
const engine = await readFile(values.engine, "utf8");
const scriptText = inScript(script.text);
const html = fill(await readFile(join(page, "index.html"), "utf8"), {
    policy: [
        "default-src 'none'",
        `script-src ${hash(scriptText)} 'wasm-unsafe-eval'`,
        `style-src ${hash(style.text)}`,
        "worker-src blob:",
        "img-src data:",
        "base-uri 'none'",
        "form-action 'none'",
    ].join("; "),
    icon: encodeURIComponent(await readFile(join(page, "icon.svg"), "utf8")),
    pieces: await readFile(join(page, "pieces.svg"), "utf8"),
    licences: await licences([...script.inputs, ...worker.inputs]),
    engine: jsonInScript(`${engine}\n${worker.text}`),
    style: style.text,
    script: scriptText,
});
if (Buffer.byteLength(html) > MOST_BYTES) {
    throw new Error(`kestran.html has ${Buffer.byteLength(html)} bytes, more than ${MOST_BYTES}`);
}
await writeFile(values.out, html);
