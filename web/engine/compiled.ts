// What the scripts that web/engine builds have in common. Such a script is loaded before this
// module and defines createKestran and kestranWasm.

/** What every script exports. */
export interface CompiledModule {
    _malloc(bytes: number): number;
    _free(address: number): void;
    UTF8ToString(address: number): string;
    stringToUTF8(text: string, address: number, bytes: number): void;
    lengthBytesUTF8(text: string): number;
}

export interface Callbacks {
    onReport?(text: string, bytes: ArrayBuffer | null): void;
    print?(line: string): void; // standard output
    printErr?(line: string): void; // standard error
}

interface Options extends Callbacks {
    instantiateWasm(
        imports: WebAssembly.Imports,
        onSuccess: (instance: WebAssembly.Instance) => void,
    ): object;
}

declare const createKestran: (options: Options) => Promise<CompiledModule>;
declare const kestranWasm: string; // the module in base64

/** Compiles the module, which takes much longer than instantiating it. */
export function compileModule(): Promise<WebAssembly.Module> {
    return WebAssembly.compile(Uint8Array.from(atob(kestranWasm), (byte) => byte.charCodeAt(0)));
}

export async function instantiate<Module extends CompiledModule>(
    compiled: WebAssembly.Module,
    callbacks: Callbacks,
): Promise<Module> {
    const module = await createKestran({
        ...callbacks,
        instantiateWasm(imports, onSuccess) {
            void WebAssembly.instantiate(compiled, imports).then(onSuccess);
            return {};
        },
    });
    return module as Module;
}

/** Calls a function of the module with the address of a text. */
export function withText<Result>(
    module: CompiledModule,
    text: string,
    call: (address: number) => Result,
): Result {
    const bytes = module.lengthBytesUTF8(text) + 1;
    const address = module._malloc(bytes);
    module.stringToUTF8(text, address, bytes);
    const result = call(address);
    module._free(address);
    return result;
}
