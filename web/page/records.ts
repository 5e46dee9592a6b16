// Reads the records of a pass. src/explain/recorder.h describes the format.

const RECORD_BYTES = 20;
const NO_PARENT = 0xffffffff;
const PROMOTIONS = ["", "n", "b", "r", "q"];

export class RecordView {
    readonly count: number;
    private readonly view: DataView;

    constructor(data: ArrayBuffer) {
        this.view = new DataView(data);
        this.count = data.byteLength / RECORD_BYTES;
    }

    /** The record of the move before, -1 for a move at the root. */
    parent(index: number): number {
        const parent = this.view.getUint32(index * RECORD_BYTES, true);
        return parent === NO_PARENT ? -1 : parent;
    }

    /** The move in long algebraic text. */
    move(index: number): string {
        const promotion = this.view.getUint8(index * RECORD_BYTES + 6) & 7;
        return square(this.from(index)) + square(this.to(index)) + (PROMOTIONS[promotion] ?? "");
    }

    /** Squares count from a1 = 0, b1 = 1 to h8 = 63. */
    from(index: number): number {
        return this.view.getUint8(index * RECORD_BYTES + 4);
    }
    to(index: number): number {
        return this.view.getUint8(index * RECORD_BYTES + 5);
    }
    isCapture(index: number): boolean {
        return (this.view.getUint8(index * RECORD_BYTES + 6) & 8) !== 0;
    }

    /** Index into Ready.endings. */
    ending(index: number): number {
        return this.view.getUint8(index * RECORD_BYTES + 7) & 0x7f;
    }
    isQuiscence(index: number): boolean {
        return (this.view.getUint8(index * RECORD_BYTES + 7) & 0x80) !== 0;
    }

    /** Thousandths of a pawn, for the side that makes the move; toScore() makes a Score of them. */
    alfa(index: number): number {
        return this.view.getInt32(index * RECORD_BYTES + 8, true);
    }
    beta(index: number): number {
        return this.view.getInt32(index * RECORD_BYTES + 12, true);
    }
    score(index: number): number {
        return this.view.getInt32(index * RECORD_BYTES + 16, true);
    }

    /** The record after the last descendant of a record, as the descendants follow it directly. */
    end(index: number): number {
        let next = index + 1;
        while (next < this.count && this.parent(next) >= index) {
            ++next;
        }
        return next;
    }

    /** The records of the moves of a line from the root, as far as the pass tried them. */
    findPath(line: string[]): number[] {
        const path: number[] = [];
        let [first, end] = [0, this.count];
        for (const move of line) {
            let child = first;
            while (child < end && this.move(child) !== move) {
                child = this.end(child);
            }
            if (child >= end) {
                break;
            }
            path.push(child);
            [first, end] = [child + 1, this.end(child)];
        }
        return path;
    }
}

function square(index: number): string {
    return "abcdefgh".charAt(index % 8) + String(Math.floor(index / 8) + 1);
}
