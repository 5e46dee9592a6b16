// Charts: the passes of a search, and the score of a game.
import { scaleLinear, scaleLog } from "d3-scale";
import { area, line } from "d3-shape";
import { svg } from "./dom";
import type { Pass } from "./protocol";
import { chartValue, negated, passScore, roughCount } from "./words";

const WIDTH = 640;
const HEIGHT = 240;
const LEFT = 52;
const RIGHT = WIDTH - 56;
const TOP = 28;
const BOTTOM = HEIGHT - 30;

type Figure = SVGSVGElement;

function figure(label: string, height = HEIGHT): Figure {
    return svg("svg", {
        viewBox: `0 0 ${WIDTH} ${height}`,
        class: "chart",
        role: "img",
        "aria-label": label,
    });
}

function text(x: number, y: number, content: string, anchor = "middle"): SVGTextElement {
    return svg("text", { x, y, "text-anchor": anchor }, content);
}

function pawns(hundredths: number): string {
    return hundredths === 0
        ? "0"
        : (hundredths > 0 ? "+" : "\u2212") + String(Math.abs(hundredths) / 100);
}

function grid(chart: Figure, y: (value: number) => number, ticks: number[]): void {
    for (const tick of ticks) {
        chart.append(
            svg("line", {
                x1: LEFT,
                x2: RIGHT,
                y1: y(tick),
                y2: y(tick),
                class: tick === 0 ? "grid zero" : "grid",
            }),
        );
        chart.append(text(LEFT - 8, y(tick) + 4, pawns(tick), "end"));
    }
}

// Columns are the moves that each pass tried, points its score for White.
export function passChart(passes: Pass[], whiteToMove: boolean): Figure {
    const last = passes[passes.length - 1];
    const chart = figure(
        last
            ? `${passes.length} passes to depth ${last.depth}, the last with ${passScore(last, whiteToMove)}`
            : "No pass yet",
    );
    const values = passes.map((pass) => chartValue(whiteToMove ? pass.score : negated(pass.score)));
    const low = Math.min(0, ...values);
    const high = Math.max(0, ...values);
    const margin = Math.max(25, (high - low) * 0.12);
    const y = scaleLinear([low - margin, high + margin], [BOTTOM, TOP]);
    const most = Math.max(1000, ...passes.map((pass) => pass.passNodes));
    const height = scaleLog([1, most], [0, BOTTOM - TOP]).clamp(true);
    const slot = (RIGHT - LEFT) / Math.max(6, passes.length);
    const x = (index: number): number => LEFT + (index + 0.5) * slot;
    passes.forEach((pass, index) =>
        chart.append(column(x(index), slot, height(Math.max(1, pass.passNodes)), pass)),
    );
    grid(chart, y, y.ticks(4));
    for (let power = 10; power <= most; power *= 100) {
        chart.append(text(RIGHT + 8, BOTTOM - height(power) + 4, roughCount(power), "start"));
    }
    chart.append(text(LEFT - 8, 14, "score", "end"), text(RIGHT + 8, 14, "moves", "start"));
    const good = passes
        .map((pass, index) => ({ pass, index }))
        .filter((at) => at.pass.outcome === "good");
    const path = line<{ index: number }>()
        .x((at) => x(at.index))
        .y((at) => y(values[at.index]))(good);
    chart.append(svg("path", { d: path ?? "", class: "scores" }));
    passes.forEach((pass, index) =>
        chart.append(point(pass, x(index), y(values[index]), whiteToMove)),
    );
    const every = Math.ceil(passes.length / 14);
    passes.forEach((pass, index) => {
        if (index % every === 0) {
            chart.append(text(x(index), BOTTOM + 18, String(pass.depth)));
        }
    });
    chart.append(text(LEFT - 8, BOTTOM + 18, "depth", "end"));
    return chart;
}

function column(x: number, slot: number, height: number, pass: Pass): SVGElement {
    const width = Math.min(44, slot * 0.7);
    return svg(
        "rect",
        { x: x - width / 2, y: BOTTOM - height, width, height, class: "column" },
        svg("title", {}, `${roughCount(pass.passNodes)} moves`),
    );
}

// A disc, or for a failed pass a triangle that points to where the score must be.
function point(pass: Pass, x: number, y: number, whiteToMove: boolean): SVGElement {
    const title = svg("title", {}, `Depth ${pass.depth}: ${passScore(pass, whiteToMove)}`);
    if (pass.outcome === "good") {
        return svg("circle", { cx: x, cy: y, r: 5, class: "good" }, title);
    }
    const down = (pass.outcome === "failed low") === whiteToMove;
    const sign = down ? 1 : -1;
    return svg(
        "path",
        { d: `M${x - 6} ${y - 4 * sign}h12l-6 ${10 * sign}z`, class: "failed" },
        title,
    );
}

export interface GamePoint {
    ply: number;
    value: number; // hundredths for White
    label: string;
    costly: boolean;
}

const GAME_HEIGHT = 200;
const MOST_PAWNS = 600;

// The score after each move of a game. `choose` gets the ply of a point that was clicked.
export function gameChart(
    points: GamePoint[],
    plies: number,
    choose: (ply: number) => void,
): Figure {
    const chart = figure("The score of the game, for White", GAME_HEIGHT);
    const x = scaleLinear([0, Math.max(10, plies)], [LEFT, WIDTH - 16]);
    const y = scaleLinear([-MOST_PAWNS, MOST_PAWNS], [GAME_HEIGHT - 24, 12]).clamp(true);
    for (const tick of [-600, -300, 0, 300, 600]) {
        chart.append(
            svg("line", {
                x1: LEFT,
                x2: WIDTH - 16,
                y1: y(tick),
                y2: y(tick),
                class: tick === 0 ? "grid zero" : "grid",
            }),
        );
        chart.append(text(LEFT - 8, y(tick) + 4, pawns(tick), "end"));
    }
    for (let ply = 20; ply <= plies; ply += plies > 120 ? 40 : 20) {
        chart.append(text(x(ply), GAME_HEIGHT - 6, String(ply / 2)));
    }
    const shape = area<GamePoint>()
        .x((at) => x(at.ply))
        .y0(y(0))
        .y1((at) => y(at.value))(points);
    const edge = line<GamePoint>()
        .x((at) => x(at.ply))
        .y((at) => y(at.value))(points);
    chart.append(
        svg("path", { d: shape ?? "", class: "area" }),
        svg("path", { d: edge ?? "", class: "scores thin" }),
    );
    for (const at of points) {
        const mark = svg(
            "circle",
            {
                cx: x(at.ply),
                cy: y(at.value),
                r: at.costly ? 5 : 2.5,
                class: at.costly ? "costly" : "good",
            },
            svg("title", {}, at.label),
        );
        mark.addEventListener("click", () => choose(at.ply));
        chart.append(mark);
    }
    return chart;
}
