// node npm/build.mjs --engine kestran-uci.js --out FOLDER: makes the folder of the npm package.
import { build } from "esbuild";
import { copyFile, mkdir, readFile, writeFile } from "node:fs/promises";
import { basename, dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { parseArgs } from "node:util";

const here = dirname(fileURLToPath(import.meta.url));
const { values } = parseArgs({ options: { engine: { type: "string" }, out: { type: "string" } } });
await mkdir(values.out, { recursive: true });

const result = await build({
    entryPoints: [join(here, "uciWorker.ts")], bundle: true, minify: true, write: false,
    format: "iife", target: "es2021", platform: "neutral", external: ["node:*"],
    legalComments: "none",
});
const engine = await readFile(values.engine, "utf8");
await writeFile(join(values.out, "kestran.js"), `${engine}\n${result.outputFiles[0].text}`);
for (const name of ["index.js", "index.d.ts", "package.json", "README.md"]) {
    await copyFile(join(here, name), join(values.out, name));
}
for (const file of ["LICENSE", "packaging/copyright"]) {
    await copyFile(join(here, "../..", file), join(values.out, basename(file)));
}
