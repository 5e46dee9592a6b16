// The messages between the page and the worker that holds the engine.
//
// The first message to a worker is Start, its first answer Ready. After that, each Request gets any
// number of progress answers and exactly one final answer ("done" or "error"), all with its id. The
// worker handles one request after the other and hears nothing while it works: to stop a search, end
// the worker and start another one from the same compiled module.

/** A move in long algebraic text, "e2e4" or "e7e8q", and in short notation, "e4" or "e8=Q". */
export interface MoveText {
    uci: string;
    san: string;
}

/**
 * Hundredths of a pawn, or moves to mate: negative if the side that the score belongs to is mated,
 * 0 if it is mated already. Unless said otherwise, a score belongs to the side to move at the root.
 */
export type Score = { cp: number } | { mate: number };

/** A position in FEN, and the moves from it in long algebraic text. */
export interface Game {
    fen: string; // "startpos" for the start position
    moves: string[];
}

// ---- Start ----

export interface Start {
    type: "start";
    module?: WebAssembly.Module; // of an earlier Ready, so that it need not be compiled again
}

export interface Ready {
    type: "ready";
    module: WebAssembly.Module;
}

// ---- Requests ----

/** Answered by AboutDone. */
export interface AboutRequest {
    type: "about";
}

/** Answered by PositionDone. Every other request that has a game answers an illegal one alike. */
export interface PositionRequest extends Game {
    type: "position";
}

/** Answered by PgnDone. */
export interface ReadPgnRequest {
    type: "readPgn";
    text: string;
    most?: number; // games to answer with; all if not given
}

/** Answered by TextDone. */
export interface WritePgnRequest extends Game {
    type: "writePgn";
    tags: Tag[]; // SetUp and FEN are added
    result: Result;
    comments?: string[]; // after each move; empty for none
}

/** Answered by Pass for each pass, then by SearchDone. */
export interface SearchRequest extends Game {
    type: "search";
    limits: Limits;
    elo?: number; // strength of a level; full strength if not given
    useBook?: boolean; // whether the opening book may answer
    rootMoves?: string[]; // the only moves to choose from
    hash?: number; // size of the table in mebibytes; 16 if not given
}

/** A search ends at the first limit. Without any, it ends after 20 passes or with a mate. */
export interface Limits {
    depth?: number; // plies
    nodes?: number;
    time?: number; // milliseconds
}

/** Answered by Pass for each pass, with its records, then by SearchDone. */
export interface RecordRequest extends Game {
    type: "record";
    depth: number;
    hash?: number; // as in a search
}

/** Why does the search not play `line`? Answered by WhyDone. */
export interface WhyRequest extends Game {
    type: "why";
    line: string[];
    depth: number;
    hash?: number; // as in a search
}

/** Reviews a game of a PGN text. Answered by ReviewedMove for each move, then by ReviewDone. */
export interface ReviewRequest {
    type: "review";
    pgn: string;
    game: number; // from 0
    nodes: number; // for each position
}

export type Request =
    | AboutRequest
    | PositionRequest
    | ReadPgnRequest
    | WritePgnRequest
    | SearchRequest
    | RecordRequest
    | WhyRequest
    | ReviewRequest;

// ---- Answers ----

export type Result = "1-0" | "0-1" | "1/2-1/2" | "*";

export interface Tag {
    name: string;
    value: string;
}

/** `line` and `column` count from 1 and are given for faults in a PGN text. */
export interface Failure {
    type: "error";
    message: string;
    line?: number;
    column?: number;
}

export interface AboutDone {
    type: "done";
    version: string;
    endings: string[]; // in words, by the number that a record has
    levels: number[]; // the ratings that `elo` can choose, the lowest first
}

export interface PositionDone {
    type: "done";
    fens: string[]; // before the first move, and after each one; six fields
    moves: MoveText[]; // of the request
    turn: "w" | "b";
    check: boolean;
    legal: MoveText[];
    end?: GameEnd;
}

/** How a game has ended. */
export interface GameEnd {
    result: Result;
    reason: "checkmate" | "stalemate" | "repetition" | "fifty moves" | "material";
    text: string; // in words
}

export interface PgnGame extends Game {
    tags: Tag[];
    texts: MoveText[]; // of the moves
    result: Result;
}

export interface PgnDone {
    type: "done";
    games: PgnGame[];
    count: number; // of the games in the text
}

export interface TextDone {
    type: "done";
    text: string;
}

/** The end of one pass of the deepening loop. */
export interface Pass {
    type: "pass";
    pass: number; // from 0
    depth: number; // plies
    outcome: "good" | "failed low" | "failed high";
    reason: string; // in words; why a failed pass is repeated
    window: { alfa: Score | null; beta: Score | null }; // null for an open end
    score: Score; // of a failed pass only the bound that failed
    nodes: number; // since the search began
    passNodes: number; // of this pass
    time: number; // milliseconds since the search began
    nps: number; // nodes per second
    hashfull: number; // thousandths
    line: MoveText[]; // empty after a failed pass
    records?: Records;
}

/** Every move that a pass tried, 20 bytes each; records.ts reads them. */
export interface Records {
    data: ArrayBuffer;
    hasQuiscence: boolean; // false if quiescence was left out because there were too many moves
    plies: number; // of the tree; fewer than the depth if even the tree has too many moves
}

export interface SearchDone {
    type: "done";
    best: MoveText | null; // null if there is no legal move
    ponder: MoveText | null;
    fromBook: boolean;
}

export interface WhyDone extends Answer {
    type: "done";
}

/** Why the search did not follow a line. */
export interface Answer {
    verdict: string; // one sentence each
    reason: string;
    details: string;
    pass: number; // the pass that it is about
    ply: number; // where the search left the line, plies from the root
    refutationPly: number; // where the refutation begins, in moves of the line
    refutation: MoveText[]; // empty if none is known
}

/** Scores are for White. `best` is the engine's line in the position before the move. */
export interface ReviewedMove {
    type: "move";
    ply: number; // from 0
    count: number; // moves of the game
    move: MoveText;
    before: Score; // of the best move
    after: Score;
    best: MoveText[];
}

export interface ReviewDone {
    type: "done";
    costliest: CostlyMove[]; // the costliest move first
    pgn: string; // the game with scores, reasons and refutations as comments
}

export interface CostlyMove {
    ply: number; // from 0
    move: MoveText;
    cost: number; // hundredths of a pawn; mates count as 1000
    reason: string;
    refutation: MoveText[]; // from the position after the move
}

export type Answered = { id: number } & (
    | AboutDone
    | PositionDone
    | PgnDone
    | TextDone
    | Pass
    | SearchDone
    | WhyDone
    | ReviewedMove
    | ReviewDone
    | Failure
);
export type Asked = { id: number } & Request;

// ---- Embedded search ----

/**
 * The search that kestran-explain embeds, as the JSON text of the element #search. The text is
 * "null" in a page without one.
 */
export interface EmbeddedSearch extends Game {
    line: MoveText[]; // the line in question
    depth: number;
    hash: number; // size of the table in mebibytes
    passes: Pass[]; // without records, which a RecordRequest can make
    answer: Answer;
}
