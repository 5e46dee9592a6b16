// A pass of the search as a tree: the records of all its moves, and what the picture needs to find
// its way in them. The records are in search order, and the descendants of a record follow it. So
// the index of a record is also its place from left to right, and `size` its width.
import { RecordView } from "./records";
import type { Records } from "./protocol";

const SLICE = 20_000; // records between two looks at the clock
const SLICE_MILLIS = 8;

export class SearchTree {
    // The number of records of a subtree.
    readonly size: Uint32Array;
    // Plies from the root; 0 for a move at the root.
    readonly ply: Uint8Array;
    // The records of each ply, in search order.
    readonly levels: Uint32Array[] = [];

    private constructor(readonly records: RecordView) {
        this.size = new Uint32Array(records.count).fill(1);
        this.ply = new Uint8Array(records.count);
    }

    get count(): number {
        return this.records.count;
    }

    // Prepares a tree in slices, so that the page stays responsive. Null if `isOutdated` says so.
    static async build(
        data: Records,
        isOutdated: () => boolean = () => false,
    ): Promise<SearchTree | null> {
        const tree = new SearchTree(new RecordView(data.data));
        const counts = new Array<number>(256).fill(0);
        const done =
            (await inSlices(tree.count, isOutdated, (index) => tree.placeRecord(index, counts))) &&
            (await inSlices(tree.count, isOutdated, (index) =>
                tree.addToParent(tree.count - 1 - index),
            ));
        if (!done) {
            return null;
        }
        for (const count of counts.filter((count) => count > 0)) {
            tree.levels.push(new Uint32Array(count));
        }
        const ends = new Array<number>(tree.levels.length).fill(0);
        const listed = await inSlices(tree.count, isOutdated, (index) => {
            const ply = tree.ply[index];
            tree.levels[ply][ends[ply]++] = index;
        });
        return listed ? tree : null;
    }

    private placeRecord(index: number, counts: number[]): void {
        const parent = this.records.parent(index);
        const ply = parent < 0 ? 0 : this.ply[parent] + 1;
        this.ply[index] = ply;
        ++counts[ply];
    }

    // From the last record to the first, each adds its subtree to the record above.
    private addToParent(index: number): void {
        const parent = this.records.parent(index);
        if (parent >= 0) {
            this.size[parent] += this.size[index];
        }
    }

    // The records from the root to this one, itself included; -1 has none.
    path(index: number): number[] {
        const path: number[] = [];
        for (let at = index; at >= 0; at = this.records.parent(at)) {
            path.unshift(at);
        }
        return path;
    }

    // The records after one move; those at the root for -1.
    children(index: number): number[] {
        const children: number[] = [];
        const end = index < 0 ? this.count : index + this.size[index];
        for (let child = index + 1; child < end; child += this.size[child]) {
            children.push(child);
        }
        return children;
    }

    // The next or previous move of the same position, or null.
    sibling(index: number, step: 1 | -1): number | null {
        const siblings = this.children(this.records.parent(index));
        return siblings[siblings.indexOf(index) + step] ?? null;
    }

    // Whether the move's score ends the search of its position: it is too good to be allowed.
    failedHigh(index: number): boolean {
        return !this.isSkipped(index) && this.records.score(index) >= this.records.beta(index);
    }

    // Whether the move is no better than one found before.
    failedLow(index: number): boolean {
        return !this.isSkipped(index) && this.records.score(index) <= this.records.alfa(index);
    }

    // Skipped without a score, because the table puts it far below the best move.
    isSkipped(index: number): boolean {
        const ending = this.records.ending(index);
        return ending === Ending.LmfCut || ending === Ending.TableLmfCut;
    }

    // The answer that refutes a move, or null if none does.
    refutation(index: number): number | null {
        const last = this.children(index).pop();
        return last !== undefined && this.failedHigh(last) ? last : null;
    }

    // The record at this place of a ply: the one whose subtree contains `place`, or the next one.
    // Its position in levels[ply], looked for from position `first` on.
    locate(ply: number, place: number, first = 0): number {
        const level = this.levels[ply];
        const endsBefore = (at: number): boolean => level[at] + this.size[level[at]] <= place;
        let low = first;
        let step = 1;
        while (low + step < level.length && endsBefore(low + step - 1)) {
            low += step;
            step *= 2;
        }
        let high = Math.min(level.length, low + step);
        while (low < high) {
            const middle = (low + high) >> 1;
            if (endsBefore(middle)) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low;
    }
}

// The numbers of MoveEnding in src/search/moveEnding.h.
export enum Ending {
    Searched,
    Repetition,
    Table,
    LmfCut,
    TableLmfCut,
    Quiet,
    DeepestPly,
    OutOfReach,
    StandPat,
    NoQuiscence,
    Clock,
    Checkmate,
    Stalemate,
}

// Calls `work` for 0 to count - 1 and lets the page breathe in between. False if outdated.
async function inSlices(
    count: number,
    isOutdated: () => boolean,
    work: (index: number) => void,
): Promise<boolean> {
    let started = performance.now();
    for (let index = 0; index < count;) {
        const end = Math.min(count, index + SLICE);
        for (; index < end; ++index) {
            work(index);
        }
        if (performance.now() - started > SLICE_MILLIS) {
            await new Promise((resolve) => setTimeout(resolve));
            started = performance.now();
        }
        if (isOutdated()) {
            return false;
        }
    }
    return true;
}
