// The engine of the page: build/web/kestran-engine.js; see compiled.ts.
import { instantiate, withText } from "./compiled";
import type { CompiledModule } from "./compiled";
import type { Answered, Asked } from "../page/protocol";

export { compileModule } from "./compiled";

interface EngineModule extends CompiledModule {
    _ask(request: number): number;
}

/** Receives an answer and the buffers that belong to it. */
export type AnswerListener = (answer: Answered, buffers: ArrayBuffer[]) => void;

/** Answers one request after the other. */
export class Engine {
    private requestId = 0; // of the request under way
    private module!: EngineModule;

    private constructor(private readonly onAnswer: AnswerListener) {}

    static async create(compiled: WebAssembly.Module, onAnswer: AnswerListener): Promise<Engine> {
        const engine = new Engine(onAnswer);
        engine.module = await instantiate<EngineModule>(compiled, {
            onReport: (text, bytes) => engine.report(text, bytes),
        });
        return engine;
    }

    /** Hands all answers to the listener before it returns. */
    answer(request: Asked): void {
        this.requestId = request.id;
        const reply = withText(this.module, JSON.stringify(request), (address) =>
            this.module.UTF8ToString(this.module._ask(address)),
        );
        this.report(reply, null);
    }

    private report(text: string, bytes: ArrayBuffer | null): void {
        const answer = { ...JSON.parse(text), id: this.requestId };
        if (bytes !== null) {
            answer.records.data = bytes;
        }
        this.onAnswer(answer, bytes === null ? [] : [bytes]);
    }
}
