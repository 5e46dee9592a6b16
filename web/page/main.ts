// Puts the page together.
import { announce, spokenMove } from "./announce";
import { Analysis } from "./analysis";
import { byId, html } from "./dom";
import { Client, Engine, Refused } from "./engine";
import { Explanation } from "./explanation";
import { Files } from "./files";
import { Game } from "./game";
import { defaultLevel, Level, makeLevels } from "./levels";
import { MoveList } from "./moveList";
import { Opponent } from "./opponent";
import { numbered, plyOf } from "./placement";
import type { AboutDone, EmbeddedSearch } from "./protocol";
import { Review } from "./review";
import { Stage } from "./stage";
import { load, save } from "./store";
import { Tabs } from "./tabs";
import { Theme } from "./theme";
import { Thinking } from "./thinking";
import { TreePanel } from "./treePanel";
import { pliesText, sideName } from "./words";

const DEFAULT_DEPTH = 4;
const MOST_DEPTH = 8;
const MOST_FIRST_DEPTH = 5; // that the page records without being asked

const engine = new Engine(JSON.parse(byId("engine").textContent ?? '""') as string);
const rules = new Client(engine); // answers at once
const player = new Client(engine); // the engine's side of the game
const analyst = new Client(engine); // everything that takes its time
const game = new Game(rules);
const stage = new Stage(game);
const thinking = new Thinking();
const opponent = new Opponent(player, game, stage, thinking);
const analysis = new Analysis(analyst, game, stage, thinking);
const tabs = new Tabs();
const theme = new Theme();
const tree = new TreePanel(analyst, rules, stage);
const depthChoice = byId<HTMLSelectElement>("depth");
new MoveList(game, stage);
const explanation = new Explanation(analyst, rules, game, stage, tree, () =>
    Number(depthChoice.value),
);
const review = new Review(analyst, game, stage);
const files = new Files(rules, game);
const person = byId<HTMLSelectElement>("person");
const levelChoice = byId<HTMLSelectElement>("level");
let levels: Level[] = [];

function say(text: string): void {
    byId("state").textContent = text || "\u00a0";
}

// ---- The game ----

// After each change: keep it, announce it, let the engine answer.
function onChange(): void {
    saveState();
    review.reset();
    const { state, sans, firstPly } = game;
    if (sans.length > 0) {
        const mover = sideName((firstPly + sans.length - 1) % 2 === 0 ? "w" : "b");
        announce(
            `${mover}: ${spokenMove(sans[sans.length - 1])}. ${state.end ? state.end.text : `${sideName(state.turn)} to move.`}`,
        );
    }
    void opponent.reply();
}

function saveState(): void {
    save({
        fen: game.startFen,
        moves: game.moves,
        tags: game.tags,
        result: game.result,
        level: Number(levelChoice.value),
        person: opponent.person,
        flipped: stage.flipped,
        theme: theme.choice,
    });
}

function setPerson(value: string): void {
    opponent.person = value === "w" || value === "b" ? value : "both";
    person.value = opponent.person;
}

function flip(flipped: boolean): void {
    stage.flip(flipped);
    tree.flip();
}

async function newGame(): Promise<void> {
    opponent.stop();
    say("");
    flip(opponent.person === "b");
    await game.load("startpos", []);
}

async function undo(): Promise<void> {
    opponent.stop();
    say("");
    const isMine = opponent.isPersonsTurn(game.state.turn);
    await game.takeBack(opponent.person !== "both" && isMine ? 2 : 1);
}

async function playText(): Promise<void> {
    const input = byId<HTMLInputElement>("move-text");
    const plain = (text: string): string => text.replace(/[+#!?=\s]/g, "").replace(/0/g, "O");
    const wanted = plain(input.value);
    const move = game.state.legal.find(
        (legal) => plain(legal.san) === wanted || legal.uci === input.value.trim(),
    );
    const mayMove = stage.canMove(game.state.turn) && !game.state.end;
    byId("move-error").textContent = !mayMove
        ? "It is not your move."
        : !move
          ? `"${input.value}" is not a legal move here.`
          : "";
    if (move && mayMove) {
        input.value = "";
        await game.play(move.uci);
    }
}

// Before the engine's last move if the person has not moved since, or the position on the board.
function whyPlace(): number {
    const lastPlace = game.moves.length;
    const engineMoved = opponent.last?.at === lastPlace - 1;
    return stage.place === lastPlace && engineMoved ? lastPlace - 1 : stage.place;
}

async function askWhy(): Promise<void> {
    if (stage.isAsking) {
        stage.showGame();
        return;
    }
    analysis.stop();
    await explanation.begin(whyPlace());
}

// ---- The search ----

async function record(at: number, title: string): Promise<void> {
    analysis.stop();
    explanation.close();
    await tree.record(game.upTo(at), Number(depthChoice.value), title);
}

function positionName(at: number): string {
    const { sans, firstPly } = game;
    return at === 0
        ? "The search of the first position"
        : `The search after ${numbered([sans[at - 1]], firstPly + at - 1)}`;
}

// The tree opens with the search of the engine's last move.
function onTab(): void {
    if (tabs.current !== "tree" || !game.isLoaded) {
        return;
    }
    if (tree.isEmpty) {
        const at = whyPlace();
        const played = game.sans[at];
        if (at === opponent.last?.at && opponent.last.depth > 1) {
            depthChoice.value = String(Math.min(MOST_FIRST_DEPTH, opponent.last.depth));
        }
        const title = played
            ? `The search for ${numbered([played], game.firstPly + at)}`
            : positionName(at);
        void record(at, title);
    } else {
        tree.look();
    }
}

// The search that the page was delivered with. Its records are made again.
async function showEmbedded(search: EmbeddedSearch): Promise<void> {
    const base = { fen: search.fen, moves: search.moves };
    setPerson("both");
    await game.load(base.fen, base.moves);
    depthChoice.value = String(Math.min(MOST_DEPTH, search.depth));
    tabs.openQuietly("tree");
    explanation.write(search.answer, search.line, plyOf(game.state.fens[search.moves.length]));
    await tree.record(base, search.depth, "Where the search left it", search.hash);
    await explanation.show(
        search.answer,
        search.line.map((move) => move.uci),
        game.state.fens[search.moves.length],
    );
}

// ---- Start ----

function setLevel(index: number): void {
    opponent.level = levels[index];
    levelChoice.value = String(index);
}

function fillChoices(ratings: number[]): void {
    levels = makeLevels(ratings);
    levelChoice.append(...levels.map(({ name }, i) => html("option", { value: i }, name)));
    setLevel(defaultLevel(levels));
    for (let depth = 1; depth <= MOST_DEPTH; ++depth) {
        depthChoice.append(html("option", { value: depth }, pliesText(depth)));
    }
    depthChoice.value = String(DEFAULT_DEPTH);
}

function connect(): void {
    const onClick = (id: string, action: () => unknown): void =>
        byId(id).addEventListener("click", () => void action());
    onClick("new", newGame);
    onClick("undo", undo);
    onClick("hint", () => opponent.hint());
    onClick("flip", () => {
        flip(!stage.flipped);
        saveState();
    });
    onClick("why-not", askWhy);
    onClick("record", () => record(stage.place, positionName(stage.place)));
    onClick("review-open", () => files.show());
    onClick("about", () => byId<HTMLDialogElement>("about-dialog").showModal());
    onClick("about-close", () => byId<HTMLDialogElement>("about-dialog").close());
    byId("move-form").addEventListener("submit", (event) => {
        event.preventDefault();
        void playText();
    });
    person.addEventListener("change", () => {
        setPerson(person.value);
        flip(opponent.person === "b");
        stage.showGame();
        saveState();
        void opponent.reply();
    });
    levelChoice.addEventListener("change", () => {
        setLevel(Number(levelChoice.value));
        saveState();
    });
    document.addEventListener("keydown", (event) => {
        if (event.key === "Escape" && stage.isAsking) {
            stage.showGame();
        }
    });
    theme.changed.listen(() => {
        tree.recolor();
        saveState();
    });
    tabs.opened.listen(onTab);
    game.changed.listen(onChange);
    stage.moved.listen((move) => {
        say("");
        void game.play(move);
    });
    stage.canMove = (turn) => opponent.isPersonsTurn(turn);
    opponent.onState = say;
    files.onState = say;
    files.onTake = (side) => {
        opponent.stop();
        opponent.last = null;
        setPerson(side);
        say("");
    };
    tree.onBegin = (position, title) =>
        thinking.begin({
            whiteToMove: position.turn === "w",
            ply: plyOf(position.fens[position.fens.length - 1]),
            title,
        });
    tree.onPass = (pass) => thinking.add(pass);
    explanation.onOpen = () => {
        tabs.openQuietly("tree");
    };
    review.pgn = () => files.pgn();
    review.onWhy = (at, move) => void explanation.explain(game.upTo(at), [move]);
}

async function restore(): Promise<void> {
    const saved = load();
    if (typeof saved.level === "number" && saved.level in levels) {
        setLevel(saved.level);
    }
    setPerson(saved.person ?? "w");
    flip(saved.flipped === true);
    try {
        await game.load(saved.fen ?? "startpos", saved.moves ?? [], saved.tags, saved.result);
    } catch (error) {
        if (!(error instanceof Refused)) {
            throw error;
        }
        await game.load("startpos", []);
    }
}

async function start(): Promise<void> {
    const about = await rules.ask<AboutDone>({ type: "about" });
    byId("about-version").textContent = `Version ${about.version}`;
    fillChoices(about.levels);
    connect();
    const embedded = JSON.parse(byId("search").textContent ?? "null") as EmbeddedSearch | null;
    if (embedded) {
        await showEmbedded(embedded);
    } else {
        await restore();
    }
    document.body.dataset.ready = "true";
}

start().catch((error: unknown) => {
    byId("caption").textContent =
        `The engine does not start: ${error instanceof Error ? error.message : String(error)}`;
});
