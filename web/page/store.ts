// Keeps the game and the settings over a reload, where the browser allows it.
import type { Result, Tag } from "./protocol";

const KEY = "kestran";

export interface Saved {
    fen: string;
    moves: string[];
    tags: Tag[];
    result: Result;
    level: number;
    person: "w" | "b" | "both";
    flipped: boolean;
    theme: string;
}

export function save(state: Saved): void {
    try {
        localStorage.setItem(KEY, JSON.stringify(state));
    } catch {
        // Without storage the page starts anew next time.
    }
}

export function load(): Partial<Saved> {
    try {
        const state: unknown = JSON.parse(localStorage.getItem(KEY) ?? "{}");
        return typeof state === "object" && state !== null ? state : {};
    } catch {
        return {};
    }
}
