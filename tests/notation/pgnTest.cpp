// Games in PGN.

#include "notation/pgn.h"
#include "notation/pgnReader.h"
#include "notation/san.h"
#include "testing/boardSupport.h"

#include <gtest/gtest.h>

namespace {

// A game in one line, without its tags: moves with glyph and comment, and the result.
std::string summaryOf(const PgnGame& game) {
    const auto braced = [](const std::string& text) {
        return text.empty() ? "" : '{' + text + '}';
    };
    std::string text = braced(game.comment);
    NumberedGame present = game.start;
    for (const auto& [move, nag, comment] : game.moves) {
        text += toSan(present.position, move) + (nag != 0 ? '$' + std::to_string(nag) : "") +
                braced(comment) + ' ';
        present.play(move);
    }
    return text + game.result;
}

// All games of a text, then the place and the reason of the fault, if there is one.
std::string summaryOf(const std::string& text) {
    PgnReader reader(text);
    std::string summary;
    while (const auto game = reader.next()) {
        summary += (summary.empty() ? "" : " | ") + summaryOf(*game);
    }
    if (const auto& fault = reader.getFault()) {
        summary += " @" + std::to_string(fault->line) + ':' + std::to_string(fault->column) + ' ' +
                   fault->reason;
        EXPECT_FALSE(reader.next());
    }
    return summary;
}

TEST(PgnReader, ReadsGames) {
    const std::string castlings = "[FEN \"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 3 12\"]\n";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"\n ; no game\n{none}", ""},
        // Numbers of moves.
        {"7.e4 3...e5 4 Nf3 .. Nc6 5.. Bb5", "e4 e5 Nf3 Nc6 Bb5 *"},
        // Comments, glyphs and variations.
        {"{a} {b} 1. e4 {c\n (d} e5 ; e } f\n 1/2-1/2", "{a b}e4{c (d} e5{e } f} 1/2-1/2"},
        {"e4! e5 $6$14 Nf3 ?! Nc6!!! d4 $0 $255", "e4$1 e5$6 Nf3$6 Nc6 d4$255 *"},
        {"$1 e4 (d4 (c4 {)} ; )\n) d5) (e3)e5 *", "e4 e5 *"},
        // Ends of games.
        {"1. e4 1-0 1. d4 0-1", "e4 1-0 | d4 0-1"},
        {"[White \"A\"]\n1. e4\n[White \"B\"] [Result \"0-1\"]\n1. d4", "e4 * | d4 0-1"},
        {R"({of no game} [Event "A"] {before} e4)", "{before}e4 *"},
        {R"([Event "A"][Result "1-0"][Event "B"])", "1-0 | *"},
        {R"([Result "?"] d4)", "d4 *"},
        {R"([Result "0-1"] d4 1-0)", "d4 1-0"},
        // Bytes and lines.
        {"\xEF\xBB\xBF[Event \"x\"]\r\n\r\n1. e4 {caf\xE9}\r\ne5\r\n1-0\r\n", "e4{caf\xE9} e5 1-0"},
        {"% {\n1. e4\r% (\r\ne5 (d5\n%)\n) Nf3", "e4 e5 Nf3 *"},
        // Moves as players write them.
        {"d2-d4 e7e5 d4xe5 f5 exf6 e.p. Nh6 f6xg7! Nc6 gxh8Q+", "d4 e5 dxe5 f5 exf6 Nh6 fxg7$1 "
                                                                "Nc6 gxh8=Q *"},
        {castlings + "12... 0-0+ 13. O-O-O!? 1-0", "O-O O-O-O$5 1-0"},
        {"[SetUp \"0\"]\n" + castlings + "e4", "e4 *"},
        {"[SetUp \"1\"]\n" + castlings + "1-0 e4", "1-0 | e4 *"},
    };
    for (const auto& [text, summary] : cases) {
        EXPECT_EQ(summaryOf(text), summary) << text;
    }
}

TEST(PgnReader, SaysWhereAndWhyItStops) {
    const std::pair<std::string, std::string> cases[] = {
        {"d4 1-0\ne4\n\n e4", R"(d4 1-0 @4:2 expected a move or a result: "e4" is not legal)"},
        {"1. d4 d5 2. Nf3 Nf6 3.Nd2", R"(@1:23 expected a move or a result: "Nd2" can mean more )"
                                      "than one move: Nbd2 Nfd2"},
        {"\r\nwhatever-this-word-may-be",
         R"(@2:1 expected a move or a result: "whatever-this-word-m...")"},
        {"e4 )", R"-(@1:4 expected a move or a result, not ")")-"},
        {"(e4 (d4) {)", R"(@1:10 expected "}")"},
        {"e4 (e5 (d4)\n", R"-(@1:4 expected ")")-"},
        {std::string(1'000'000, '('), R"-(@1:1 expected ")")-"},
        {"e4 $-1", R"(@1:4 expected a number from 0 to 255)"},
        {"e4 $256", R"(@1:4 expected a number from 0 to 255)"},
        {"[", R"(@1:2 expected a tag such as [Event "name"])"},
        {"[Event name]", R"(@1:8 expected a tag such as)"},
        {"[Event \"a\\\"b\nc\"]",
         R"(@1:13 expected a quotation mark after the value of the tag "Event")"},
        {"[Event \"name\\", R"(@1:14 expected a quotation mark)"},
        {"[Event \"name\"\n1. e4", R"(@2:1 expected "]")"},
        {"[SetUp \"1\"]\n1. e4", R"(@2:4 expected the tag "FEN")"},
        {"\n[FEN \"8/8 w - -\"]", R"(@2:7 expected a position that can be played: it has)"},
    };
    for (const auto& [text, summary] : cases) {
        EXPECT_NE(summaryOf(text).find(summary), std::string::npos) << text.substr(0, 100) << '\n'
                                                                    << summaryOf(text);
    }
}

TEST(PgnReader, KeepsTagsAndMoveNumbers) {
    const std::string text = "[ White \"M\xFCller \\\"K\\\" \\\\\" ]\n"
                             "[FEN \"4k3/8/8/8/8/8/8/4K2R b K - 3 12\"]\n12... Kd7 13. O-O";
    PgnReader reader(text);
    const auto game = reader.next();
    ASSERT_TRUE(game);
    EXPECT_EQ(game->getTag("White"), "M\xFCller \"K\" \\");
    EXPECT_EQ(game->getTag("Black"), "");
    EXPECT_EQ(getWholeFen(game->start), "4k3/8/8/8/8/8/8/4K2R b K - 3 12");
    EXPECT_EQ(getWholeFen(game->after(1)), "8/3k4/8/8/8/8/8/4K2R w K - 4 13");
    EXPECT_EQ(getWholeFen(game->after(2)), "8/3k4/8/8/8/8/8/5RK1 b - - 5 13");
    EXPECT_EQ(game->after(2).repetitionHashes.size(), 3U);
    NumberedGame first;
    EXPECT_EQ(readGameStart(first, "4k3/8/8/8/8/8/8/4K2R w K - 3 0"), "");
    EXPECT_EQ(getWholeFen(first), "4k3/8/8/8/8/8/8/4K2R w K - 3 1");
}

TEST(Pgn, WritesWhatItReads) {
    PgnGame game = beginPgnGame(R"(E "x" \)", "2", "W", "B");
    readGameStart(game.start, "4k3/8/8/8/8/8/8/4K2R b K - 3 12");
    game.comment = "before";
    game.result = "1-0";
    for (const char* text : {"e8d7", "e1g1", "d7c6", "f1f6", "c6b5"}) {
        game.moves.push_back({moveOf(game.after(game.moves.size()).position, text)});
    }
    game.moves[0].comment = "a {b}  c\n";
    game.moves[1].comment = "{ }";
    game.moves[2].nag = 2;
    game.moves[3].nag = 1;
    game.moves[3].comment = "d";
    const std::string text = toPgn(game);
    const std::size_t date = text.find("[Date \"20");
    ASSERT_NE(date, std::string::npos);
    EXPECT_EQ(text.substr(0, date) + text.substr(text.find('\n', date) + 1),
              "[Event \"E \\\"x\\\" \\\\\"]\n[Site \"?\"]\n[Round \"2\"]\n[White \"W\"]\n"
              "[Black \"B\"]\n[Result \"1-0\"]\n[SetUp \"1\"]\n"
              "[FEN \"4k3/8/8/8/8/8/8/4K2R b K - 3 12\"]\n\n"
              "{before} 12... Kd7 {a b c} 13. O-O Kc6 $2 14. Rf6+ $1 {d} 14... Kb5 1-0\n\n");
    PgnReader reader(text);
    EXPECT_EQ(toPgn(reader.next().value()), text);
    EXPECT_EQ(toPgn(PgnGame()), "[Result \"*\"]\n\n*\n\n");
}

TEST(Pgn, KeepsItsLinesShort) {
    std::string moves;
    for (int i = 0; i < 40; ++i) {
        moves += "Nf3 Nf6 {there} Ng1 Ng8 ";
    }
    PgnReader reader(moves);
    const std::string text = toPgn(reader.next().value());
    std::istringstream lines(text);
    std::size_t longest = 0;
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
    }
    EXPECT_EQ(longest, 79U);
    EXPECT_EQ(summaryOf(text), summaryOf(moves));
}

} // namespace
