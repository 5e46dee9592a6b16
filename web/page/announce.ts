// Speaks to screen readers through the page's live region.
import { byId } from "./dom";

const PIECES: Record<string, string> = {
    K: "king",
    Q: "queen",
    R: "rook",
    B: "bishop",
    N: "knight",
};

export function announce(text: string): void {
    const region = byId("announcer");
    // A repeated text is only read again if the region has changed in between.
    region.textContent = "";
    setTimeout(() => {
        region.textContent = text;
    }, 30);
}

// "Nxe5+" as "knight takes e5, check".
export function spokenMove(san: string): string {
    if (san.startsWith("O-O")) {
        const side = san.startsWith("O-O-O") ? "queenside" : "kingside";
        return `castles ${side}${spokenEnd(san)}`;
    }
    const move = san.replace(/[+#]$/, "");
    const piece = PIECES[move[0]];
    const promoted = /=([QRBN])/.exec(move);
    return (
        [
            piece ?? "",
            (piece ? move.slice(1) : move).replace(/=.*/, "").replace("x", " takes "),
            promoted ? `promotes to ${PIECES[promoted[1]]}` : "",
        ]
            .join(" ")
            .replace(/\s+/g, " ")
            .trim() + spokenEnd(san)
    );
}

function spokenEnd(san: string): string {
    return san.endsWith("#") ? ", checkmate" : san.endsWith("+") ? ", check" : "";
}
