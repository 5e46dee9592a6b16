// node pack.mjs GLUE.js MODULE.wasm OUTPUT.js: makes one classic script of what emscripten built.
import { readFileSync, writeFileSync } from "node:fs";

const [glue, module, output] = process.argv.slice(2);
const bytes = readFileSync(module).toString("base64");
const text = `var kestranWasm = "${bytes}";
${readFileSync(glue, "utf8")}
if (typeof module === "object") {
    module.exports = { createKestran, kestranWasm };
}
`;
writeFileSync(output, text);
