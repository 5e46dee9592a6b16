// What the moves of a search tree do on the board.
import { afterStep, labelOf, Placement, Step } from "./placement";
import type { SearchTree } from "./searchTree";

const MOST_KEPT = 5000;

export class TreeMoves {
    private readonly placements = new Map<number, Placement>();

    // `root` is the position that was searched, `whiteToMove` its side.
    constructor(
        private readonly tree: SearchTree,
        private readonly root: Placement,
        private readonly whiteToMove: boolean,
    ) {}

    step(index: number): Step {
        const text = this.tree.records.move(index);
        const turned = (square: number): number => square ^ 56; // a record counts squares from a1
        return {
            from: turned(this.tree.records.from(index)),
            to: turned(this.tree.records.to(index)),
            promotion: text.slice(4),
        };
    }

    // The position after a move; the root for -1.
    placement(index: number): Placement {
        if (index < 0) {
            return this.root;
        }
        let placement = this.placements.get(index);
        if (placement === undefined) {
            placement = afterStep(
                this.placement(this.tree.records.parent(index)),
                this.step(index),
            );
            if (this.placements.size > MOST_KEPT) {
                this.placements.clear();
            }
            this.placements.set(index, placement);
        }
        return placement;
    }

    label(index: number): string {
        return labelOf(this.placement(this.tree.records.parent(index)), this.step(index));
    }

    // Whether White makes this move.
    isWhite(index: number): boolean {
        return (this.tree.ply[index] % 2 === 0) === this.whiteToMove;
    }

    line(index: number): string[] {
        return this.tree.path(index).map((at) => this.tree.records.move(at));
    }
}
