// The tabs of the side panel, with the keys that tabs have.
import { byId } from "./dom";
import { Signal } from "./signal";

export type TabName = "game" | "thinking" | "tree" | "review";

const NAMES: TabName[] = ["game", "thinking", "tree", "review"];

export class Tabs {
    readonly opened = new Signal<TabName>();
    current: TabName = "game";

    constructor() {
        for (const name of NAMES) {
            const tab = byId(`tab-${name}`);
            tab.addEventListener("click", () => this.open(name));
            tab.addEventListener("keydown", (event) => this.onKey(event, name));
        }
        this.open("game");
    }

    open(name: TabName): void {
        this.openQuietly(name);
        this.opened.send(name);
    }

    // Without what opening the tab starts.
    openQuietly(name: TabName): void {
        this.current = name;
        for (const other of NAMES) {
            const isOpen = other === name;
            const tab = byId(`tab-${other}`);
            tab.setAttribute("aria-selected", String(isOpen));
            tab.tabIndex = isOpen ? 0 : -1;
            byId(`panel-${other}`).hidden = !isOpen;
        }
    }

    private onKey(event: KeyboardEvent, name: TabName): void {
        const step = { ArrowRight: 1, ArrowLeft: NAMES.length - 1 }[event.key];
        if (step !== undefined) {
            const next = NAMES[(NAMES.indexOf(name) + step) % NAMES.length];
            this.open(next);
            byId(`tab-${next}`).focus();
            event.preventDefault();
        }
    }
}
