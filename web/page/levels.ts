// The levels of play. The engine knows their ratings, which were measured (docs/strength.md).
import type { Limits } from "./protocol";

export interface Level {
    name: string;
    elo?: number;
    limits: Limits;
}

const DEFAULT_RATING = 1400; // the level that is nearest

export function makeLevels(ratings: number[]): Level[] {
    return [
        ...ratings.map((elo, i) => ({ name: `${i + 1}: about ${elo}`, elo, limits: {} })),
        { name: `${ratings.length + 1}: full strength, 3 seconds`, limits: { time: 3000 } },
    ];
}

export function defaultLevel(levels: Level[]): number {
    const distances = levels.map(({ elo = Infinity }) => Math.abs(elo - DEFAULT_RATING));
    return distances.indexOf(Math.min(...distances));
}
