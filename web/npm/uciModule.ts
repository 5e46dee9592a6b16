// The compiled front end: build/web/kestran-uci.js; see compiled.ts.
import { instantiate, withText } from "../engine/compiled";
import type { CompiledModule } from "../engine/compiled";

export { compileModule } from "../engine/compiled";

interface UciModule extends CompiledModule {
    _handleLine(line: number): void;
}

/** Creates a front end. The result executes a line, which takes as long as a search. */
export async function createUci(
    compiled: WebAssembly.Module,
    send: (line: string) => void,
): Promise<(line: string) => void> {
    const module = await instantiate<UciModule>(compiled, { print: send });
    return (line) => withText(module, line, (address) => module._handleLine(address));
}
