// Light or dark: the system's choice until the person makes one.
import { byId } from "./dom";
import { Signal } from "./signal";
import { load } from "./store";

export class Theme {
    readonly changed = new Signal<void>();
    choice = load().theme ?? "";
    private readonly toggle = byId("theme");
    private readonly system = matchMedia("(prefers-color-scheme: dark)");

    constructor() {
        this.toggle.addEventListener("click", () => {
            this.choice = this.isDark ? "light" : "dark";
            this.apply();
            this.changed.send();
        });
        this.system.addEventListener("change", () => {
            this.apply();
            this.changed.send();
        });
        this.apply();
    }

    private get isDark(): boolean {
        return this.choice ? this.choice === "dark" : this.system.matches;
    }

    private apply(): void {
        document.documentElement.dataset.theme = this.isDark ? "dark" : "light";
        this.toggle.textContent = this.isDark ? "Light" : "Dark";
    }
}
