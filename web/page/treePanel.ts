// The tree of a search: records it pass by pass, draws it, and shows the selected move.
import { BoardPicture } from "./boardPicture";
import { Describer } from "./describe";
import { byId, html } from "./dom";
import { GROUPS, groupOf } from "./endings";
import { Client, Stopped } from "./engine";
import { Icicle } from "./icicle";
import { numbered, placementOf, plyOf } from "./placement";
import type { Game as GameText, Pass, PositionDone, SearchDone } from "./protocol";
import { SearchTree } from "./searchTree";
import type { Stage } from "./stage";
import { TimeMachine } from "./timeMachine";
import { TreeMoves } from "./treeMoves";
import { countText, passScore, pliesText, roughCount } from "./words";

interface Recording {
    base: GameText;
    depth: number;
    position: PositionDone;
    passes: Pass[];
}

export class TreePanel {
    // Where a search reports its passes, too.
    onBegin: (position: PositionDone, title: string) => void = () => {};
    onPass: (pass: Pass) => void = () => {};
    private readonly icicle = new Icicle();
    private readonly time = new TimeMachine();
    private readonly picture = new BoardPicture();
    private readonly passChoice = byId<HTMLSelectElement>("pass-choice");
    private recording: Recording | null = null;
    private describer: Describer | null = null;
    private shownPass = -1;
    private selection = -1;
    private version = 0; // of the tree that is shown

    constructor(
        private readonly analyst: Client,
        private readonly rules: Client,
        private readonly stage: Stage,
    ) {
        byId("icicle").append(this.icicle.canvas);
        byId("detail-board").append(this.picture.element);
        this.passChoice.addEventListener(
            "change",
            () => void this.showPass(Number(this.passChoice.value)),
        );
        this.icicle.selected.listen((index) => this.select(index, "stay"));
        this.icicle.hovered.listen((index) => this.detail(index ?? this.selection));
        this.time.moved.listen((index) => this.select(index, "follow"));
    }

    get isEmpty(): boolean {
        return this.recording === null;
    }

    // Whether this search is recorded already.
    has(base: GameText, depth: number): boolean {
        const { recording } = this;
        return recording !== null && recording.depth === depth && sameGame(recording.base, base);
    }

    // Records a search of a position, and shows its last pass.
    async record(base: GameText, depth: number, title: string, hash?: number): Promise<void> {
        this.analyst.stop();
        this.note(`Recording to depth ${depth} \u2026`);
        const position = await this.rules.ask<PositionDone>({ type: "position", ...base });
        const recording: Recording = { base, depth, position, passes: [] };
        byId("tree-title").textContent = title;
        this.onBegin(position, title);
        try {
            await this.analyst.ask<SearchDone, Pass>(
                { type: "record", ...base, depth, hash },
                (pass) => {
                    recording.passes.push(pass);
                    this.onPass(pass);
                    this.note(
                        `Recorded depth ${pass.depth}: ${roughCount(pass.nodes)} moves \u2026`,
                    );
                },
            );
        } catch (error) {
            if (error instanceof Stopped) {
                this.note("Stopped.");
                return;
            }
            throw error;
        }
        if (recording.passes.length === 0) {
            this.note("There is nothing to search here: the game is over.");
            return;
        }
        this.recording = recording;
        this.shownPass = -1;
        this.passChoice.replaceChildren(
            ...recording.passes.map((at, index) => this.passOption(at, index)),
        );
        byId("tree-empty").hidden = true;
        byId("tree-body").hidden = false;
        await this.showPass(recording.passes.length - 1);
    }

    // Selects the last move of a line as far as a pass tried it.
    async goTo(pass: number, line: string[]): Promise<number[]> {
        if (this.shownPass !== pass) {
            await this.showPass(pass);
        }
        const path = this.describer?.tree.records.findPath(line) ?? [];
        this.select(path[path.length - 1] ?? -1, "zoomIn");
        return path;
    }

    // Shows the selected move on the large board again.
    look(): void {
        if (this.describer && this.selection >= 0) {
            this.select(this.selection, "stay");
        }
    }

    flip(): void {
        this.detail(this.selection);
    }

    recolor(): void {
        this.icicle.recolor();
    }

    private passOption(pass: Pass, index: number): HTMLOptionElement {
        const white = this.recording!.position.turn === "w";
        const again = pass.outcome === "good" ? "" : ", to be repeated";
        const text = `Depth ${pass.depth}: ${passScore(pass, white)}, ${roughCount(pass.passNodes)} moves${again}`;
        return html("option", { value: index, disabled: !pass.records }, text);
    }

    private async showPass(index: number): Promise<void> {
        const { recording } = this;
        const pass = recording?.passes[index];
        if (!recording || !pass?.records) {
            return;
        }
        const version = ++this.version;
        this.passChoice.value = String(index);
        const tree = await SearchTree.build(pass.records, () => version !== this.version);
        if (!tree) {
            return;
        }
        this.shownPass = index;
        const { position } = recording;
        const root = position.fens[position.fens.length - 1];
        const moves = new TreeMoves(tree, placementOf(root), position.turn === "w");
        this.describer = new Describer(tree, moves, plyOf(root));
        this.icicle.show(tree, moves);
        this.time.show(this.describer);
        this.selection = -1;
        this.note(this.summary(tree, pass));
        this.drawLegend(tree);
        this.detail(-1);
    }

    private summary(tree: SearchTree, pass: Pass): string {
        const left = leftOut(pass);
        const reason = pass.outcome === "good" ? "" : ` ${pass.reason}`;
        return `${countText(tree.count)} moves, each a box.${left}${reason}`;
    }

    private note(text: string): void {
        byId("tree-note").textContent = text;
    }

    // Only what occurs in the pass. Counted in a sample if the pass is large.
    private drawLegend(tree: SearchTree): void {
        const counts = new Array<number>(GROUPS.length).fill(0);
        const step = Math.max(1, Math.floor(tree.count / 50_000));
        let looked = 0;
        for (let index = 0; index < tree.count; index += step, ++looked) {
            ++counts[groupOf(tree.records.ending(index))];
        }
        const items = GROUPS.map((group, i) => ({
            group,
            part: counts[i] / Math.max(1, looked),
        })).filter((item) => item.part > 0);
        const shown = items.map(({ group, part }) =>
            html(
                "li",
                {},
                html("span", { class: `swatch ${group.color.slice(2)}` }),
                group.name,
                html(
                    "span",
                    { class: "quiet" },
                    part < 0.01 ? " < 1 %" : ` ${Math.round(part * 100)} %`,
                ),
            ),
        );
        const cut = html(
            "li",
            {},
            html("span", { class: "swatch cut" }),
            "marked end: cut-off, the rest was not tried",
        );
        byId("legend").replaceChildren(...shown, cut);
    }

    private select(index: number, how: "follow" | "zoomIn" | "stay"): void {
        this.selection = index;
        this.icicle.mark(index, how);
        this.time.set(index);
        this.detail(index);
        this.lookAt(index);
    }

    // The large board follows the selection; short notation comes from the engine a moment later.
    private lookAt(index: number): void {
        const { describer } = this;
        if (!describer) {
            return;
        }
        const lastMove = index < 0 ? undefined : describer.moves.step(index);
        const view = { placement: describer.moves.placement(index), lastMove };
        const caption = (line: string): string =>
            index < 0 ? "In the search: the position itself" : `In the search: ${line}`;
        const rename = this.stage.look(view, caption(describer.line(index)));
        if (index >= 0) {
            void this.nameLine(index).then((line) => {
                rename(caption(line));
                if (index === this.selection) {
                    byId("detail-line").textContent = line;
                }
            });
        }
    }

    private async nameLine(index: number): Promise<string> {
        const { base, position } = this.recording!;
        const line = this.describer!.moves.line(index);
        const answer = await this.rules.ask<PositionDone>({
            type: "position",
            fen: base.fen,
            moves: [...base.moves, ...line],
        });
        const names = answer.moves.slice(base.moves.length).map((move) => move.san);
        return numbered(names, plyOf(position.fens[position.fens.length - 1]));
    }

    private detail(index: number): void {
        const { describer } = this;
        if (!describer) {
            return;
        }
        this.picture.flipped = this.stage.flipped;
        this.picture.show({
            placement: describer.moves.placement(index),
            lastMove: index < 0 ? undefined : describer.moves.step(index),
        });
        byId("detail-line").textContent =
            index < 0 ? "The position that was searched" : describer.line(index);
        byId("detail-score").textContent = index < 0 ? "" : `Score: ${describer.scoreText(index)}`;
        byId("detail-verdict").textContent =
            index < 0
                ? "Point at a box to see its move. Click it, or press Enter, to look closer."
                : describer.verdict(index);
        byId("detail-reason").textContent = index < 0 ? "" : describer.reason(index);
        byId("detail-window").textContent =
            index < 0 ? "" : `Window: ${describer.windowText(index)}`;
    }
}

// What a large pass does not keep.
function leftOut(pass: Pass): string {
    const { hasQuiscence, plies } = pass.records!;
    if (hasQuiscence) {
        return "";
    }
    const deeper =
        plies < pass.depth
            ? `everything after ${pliesText(plies)} is`
            : "the captures after the full depth are";
    return ` The pass is too large to keep all of it: ${deeper} left out.`;
}

function sameGame(a: GameText, b: GameText): boolean {
    return a.fen === b.fen && a.moves.join() === b.moves.join();
}
