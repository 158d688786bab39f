// Text to tokens: the server's lexical rules, the odd ones above all.
#include "embedded/syntax/lexer.h"

#include <gtest/gtest.h>

#include "embedded/error.h"

namespace tavcc::sql {
namespace {

// One word for each token: a letter for its kind and its text. K is a keyword.
std::string Tokens(std::string_view text) {
  constexpr std::string_view kLetters =
      "!WQV"
      "IDFBM"
      "TN"
      "S"
      "UC";
  std::string all;
  for (Lexer lexer(text); lexer.Peek().kind != TokenKind::kEnd; lexer.Take()) {
    const Token& token = lexer.Peek();
    const bool keyword = IsReserved(token.keyword);
    if (!all.empty()) all += ' ';
    all += keyword ? 'K' : kLetters[static_cast<size_t>(token.kind)];
    all += ':';
    all += token.text;
  }
  return all;
}

TEST(Lexer, Tokens) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},
      {" \t\r\n\v\f", ""},
      // A word may follow a number without a blank.
      {"0where", "I:0 K:where"},
      {"5And", "I:5 K:And"},
      {"12.5as FPrice", "D:12.5 K:as W:FPrice"},
      {"1.a", "D:1. W:a"},
      {"7FID", "I:7 W:FID"},
      // An exponent needs no digits, and what follows it is a word of its own.
      {"1e3 1E-3 1.5e+3 .5e1", "F:1e3 F:1E-3 F:1.5e+3 F:.5e1"},
      {"0e 1e+ 1.e", "F:0e F:1e+ F:1.e"},
      {"0end", "F:0e W:nd"},
      {"5Else", "F:5E W:lse"},
      {"1e5x", "F:1e5 W:x"},
      {"0x1F 0xg 0x 0X0a", "B:0x1F B:0x W:g B:0x B:0X0a"},
      {"007 1. .5 1..2", "I:007 D:1. D:.5 D:1. D:.2"},
      {"-5 - -5", "S:- I:5 S:- S:- I:5"},
      // Names.
      {"a_1 #t ##g _x a$b a#b a@b", "W:a_1 W:#t W:##g W:_x W:a$b W:a#b W:a@b"},
      {"@a @@rowcount @ @1", "V:@a V:@@rowcount V:@ V:@1"},
      {"[a b] [a]]b] \"x\" \"x\"\"y\"", "Q:[a b] Q:[a]]b] Q:\"x\" Q:\"x\"\"y\""},
      {"表头.单价", "W:表头 S:. W:单价"},
      {"数量2 été", "W:数量2 W:été"},
      {"a.b..c", "W:a S:. W:b S:. S:. W:c"},
      // Keywords in any case; the names of types and functions are none.
      {"select SELECT SeLeCt selected", "K:select K:SELECT K:SeLeCt W:selected"},
      {"int varchar isnull cast output next", "W:int W:varchar W:isnull W:cast W:output W:next"},
      {"[select] \"from\"", "Q:[select] Q:\"from\""},
      // Texts.
      {"'a' N'b' n'c' 'it''s' ''", "T:'a' N:N'b' N:n'c' T:'it''s' T:''"},
      {"'a''' 'b'", "T:'a''' T:'b'"},
      {"'--' '/*'", "T:'--' T:'/*'"},
      {"N 'x'", "W:N T:'x'"},
      {"xN'y'", "W:xN T:'y'"},
      // Comments.
      {"a --b\nc", "W:a W:c"},
      {"a --b", "W:a"},
      {"a/*b*/c", "W:a W:c"},
      {"/* a /* b */ c */ d", "W:d"},
      {"/*/*/**/*/*/a", "W:a"},
      {"-- /*\na", "W:a"},
      {"/* -- */ a", "W:a"},
      {"1--2\n", "I:1"},
      // Operators: compound assignments are one token, comparisons are two.
      {"<> != !< >= <=", "S:< S:> S:! S:= S:! S:< S:> S:= S:< S:="},
      {"+= -= *= /= %= &= |= ^=", "S:+= S:-= S:*= S:/= S:%= S:&= S:|= S:^="},
      {"a=-1", "W:a S:= S:- I:1"},
      {"$1.50", "M:$1.50"},
      // What is neither letter nor blank to the server is a symbol that no rule of grammar takes:
      // a full-width blank, comma and bracket, a no-break space.
      {"a　b", "W:a S:　 W:b"},
      {"a，b（c", "W:a S:， W:b S:（ W:c"},
      {"a\xc2\xa0"
       "b",
       "W:a S:\xc2\xa0 W:b"},
      // Ends in the middle of a token.
      {"'abc", "U:'abc"},
      {"a [b", "W:a U:[b"},
      {"a /* b", "W:a C:/* b"},
  };
  for (const auto& [text, tokens] : rows) EXPECT_EQ(Tokens(text), tokens) << text;
}

TEST(Lexer, TextThatIsNotUtf8IsRefused) {
  for (const char* text : {
           "\x80",              // no beginning of a character
           "a\xc3",             // ends within one
           "'\xc0\xaf'",        // longer than needed
           "\xed\xa0\x80",      // a surrogate
           "\xf4\x90\x80\x80",  // beyond the last character
           "-- \xff",
       }) {
    try {
      Lexer lexer(text);
      ADD_FAILURE() << text;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number, errors::kNotSupported);
      EXPECT_EQ(error.message, "Not supported by the embedded database: text that is not UTF-8.");
    }
  }
}

TEST(Lexer, CountsLines) {
  Lexer lexer("a\r\nb /* \n\n */ 'x\ny' c\n\nd");
  const int lines[] = {1, 2, 4, 5, 7};
  for (const int line : lines) {
    EXPECT_EQ(lexer.Peek().line, line) << lexer.Peek().text;
    lexer.Take();
  }
}

TEST(Lexer, LooksAhead) {
  Lexer lexer("a b c d");
  EXPECT_EQ(lexer.Peek(0).text, "a");
  EXPECT_EQ(lexer.Peek(1).text, "b");
  EXPECT_EQ(lexer.Peek(2).text, "c");
  EXPECT_EQ(lexer.Take().text, "a");
  EXPECT_EQ(lexer.Peek(2).text, "d");
  for (int i = 0; i < 5; ++i) lexer.Take();
  EXPECT_EQ(lexer.Peek().kind, TokenKind::kEnd);
}

TEST(Keywords, AllAreFoundInAnyCase) {
  // A few of each length; every other word of the table is found through the same path.
  for (const char* word :
       {"as", "AS", "Of", "Add", "tOP", "From", "WHERE", "Select", "declare", "raiserror",
        "TRANSACTION", "NONCLUSTERED", "current_timestamp", "SemanticSimilarityDetailsTable"})
    EXPECT_TRUE(IsReserved(FindKeyword(word))) << word;
  for (const char* word : {"", "a", "asx", "fromm", "int", "count", "séect", "t_Stock"})
    EXPECT_FALSE(IsReserved(FindKeyword(word))) << word;
#define TAVCC_SQL_CHECK(word) EXPECT_EQ(FindKeyword(#word), Keyword::k##word);
  TAVCC_SQL_RESERVED_WORDS(TAVCC_SQL_CHECK)
#undef TAVCC_SQL_CHECK
}

}  // namespace
}  // namespace tavcc::sql
