// The compiled engine: the script build/web/kestran-engine.js, which is loaded before this module
// and defines createKestran and kestranWasm.
import type { Answered, Asked } from "../page/protocol";

/** What a compiled script of web/engine exports. */
interface EngineModule {
    _ask(request: number): number;
    _malloc(bytes: number): number;
    _free(address: number): void;
    UTF8ToString(address: number): string;
    stringToUTF8(text: string, address: number, bytes: number): void;
    lengthBytesUTF8(text: string): number;
}

interface EngineOptions {
    onReport(text: string, bytes: ArrayBuffer | null): void;
    instantiateWasm(
        imports: WebAssembly.Imports,
        onSuccess: (instance: WebAssembly.Instance) => void,
    ): object;
}

declare const createKestran: (options: EngineOptions) => Promise<EngineModule>;
declare const kestranWasm: string; // the module in base64

/** Receives an answer and the buffers that belong to it. */
export type AnswerListener = (answer: Answered, buffers: ArrayBuffer[]) => void;

/** Compiles the module, which takes much longer than creating an engine from it. */
export function compileModule(): Promise<WebAssembly.Module> {
    return WebAssembly.compile(Uint8Array.from(atob(kestranWasm), (byte) => byte.charCodeAt(0)));
}

/** Answers one request after the other. */
export class Engine {
    private requestId = 0; // of the request under way
    private module!: EngineModule;

    private constructor(private readonly onAnswer: AnswerListener) {}

    static async create(compiled: WebAssembly.Module, onAnswer: AnswerListener): Promise<Engine> {
        const engine = new Engine(onAnswer);
        engine.module = await createKestran({
            onReport: (text, bytes) => engine.report(text, bytes),
            instantiateWasm(imports, onSuccess) {
                void WebAssembly.instantiate(compiled, imports).then(onSuccess);
                return {};
            },
        });
        return engine;
    }

    /** Hands all answers to the listener before it returns. */
    answer(request: Asked): void {
        this.requestId = request.id;
        this.report(this.ask(JSON.stringify(request)), null);
    }

    private ask(request: string): string {
        const { _ask, _malloc, _free, UTF8ToString, stringToUTF8, lengthBytesUTF8 } = this.module;
        const bytes = lengthBytesUTF8(request) + 1;
        const address = _malloc(bytes);
        stringToUTF8(request, address, bytes);
        const reply = UTF8ToString(_ask(address));
        _free(address);
        return reply;
    }

    private report(text: string, bytes: ArrayBuffer | null): void {
        const answer = { ...JSON.parse(text), id: this.requestId };
        if (bytes !== null) {
            answer.records.data = bytes;
        }
        this.onAnswer(answer, bytes === null ? [] : [bytes]);
    }
}
