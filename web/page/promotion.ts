// Asks which piece a pawn becomes.
import { button, html } from "./dom";
import { pieceFigure } from "./pieces";

const CHOICES: Array<[string, string]> = [
    ["q", "Queen"],
    ["r", "Rook"],
    ["b", "Bishop"],
    ["n", "Knight"],
];

// Resolves to "q", "r", "b" or "n", or to null if the person cancels.
export function askPromotion(white: boolean): Promise<string | null> {
    return new Promise((resolve) => {
        const dialog = html("dialog", { class: "promotion", "aria-label": "Promote the pawn to" });
        for (const [letter, name] of CHOICES) {
            const choice = button("", () => dialog.close(letter), { value: letter });
            choice.append(pieceFigure(white ? letter.toUpperCase() : letter), name);
            dialog.append(choice);
        }
        dialog.append(button("Cancel", () => dialog.close(""), { class: "plain" }));
        dialog.addEventListener("close", () => {
            dialog.remove();
            resolve(dialog.returnValue || null);
        });
        document.body.append(dialog);
        dialog.showModal();
    });
}
