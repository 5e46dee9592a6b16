// The levels of play: nodes for a move, and the rating that they are worth (docs/strength.md).
import type { Limits } from "./protocol";

export interface Level {
    name: string;
    rating: string;
    limits: Limits;
}

export const LEVELS: Level[] = [
    { name: "1", rating: "about 1200", limits: { nodes: 1_000 } },
    { name: "2", rating: "about 1300", limits: { nodes: 30_000 } },
    { name: "3", rating: "about 1400", limits: { nodes: 100_000 } },
    { name: "4", rating: "about 1600", limits: { nodes: 300_000 } },
    { name: "5", rating: "about 1750", limits: { nodes: 1_000_000 } },
    { name: "6", rating: "about 1900", limits: { nodes: 3_000_000 } },
    { name: "7", rating: "about 2000", limits: { nodes: 10_000_000 } },
];

export const DEFAULT_LEVEL = 2; // index
