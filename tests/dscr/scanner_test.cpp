// The description-language scanner on real files: tokens and their positions,
// error reports, the hand-out with look-ahead, and encodings.
#include "dscr/scanner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/scratch_folder.h"
#include "support/sink_capture.h"

namespace {

using namespace std::string_view_literals;

class ScannerTest : public ::testing::Test {
protected:
    // Writes `bytes` into a new file and opens the scanner on it.
    bool Open(std::string_view bytes) {
        std::ofstream(path_, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return scanner_.SFOpen(path_.wstring());
    }

    // The print forms of all tokens up to the end of the file, without "TOKID_".
    std::wstring Tokens(std::string_view bytes) {
        if (!Open(bytes)) return L"SFOpen failed";
        std::wstring tokens;
        for (size_t guard = 0; scanner_.CurrentToken().id != TOKID_EOF && guard <= bytes.size(); ++guard) {
            std::wstring form = TokenPrintForm(scanner_.CurrentToken());
            tokens += (tokens.empty() ? L"" : L", ") + form.erase(form.find(L"TOKID_"), 6);
            const bool loaded = scanner_.Token_Load();
            EXPECT_EQ(loaded, scanner_.CurrentToken().id != TOKID_ERROR);
        }
        return tokens;
    }

    const ScratchFolder folder_;
    const std::filesystem::path path_ = folder_.path / "input.udf";
    LogCapture log_;
    TraceCapture trace_;
    X_New_Scanfile scanner_;
};

TEST_F(ScannerTest, TokenTable) {
    constexpr std::wstring_view kUnit = L"1/1: KW_UNIT <unit>, 1/6: STRBRA <m\u00b2>, 2/1: SEMIC";
    const std::pair<std::string_view, std::wstring_view> rows[] = {
        {"a->b", L"1/1: ID <a>, 1/2: ARROWRIGHT, 1/4: ID <b>"},
        // A pair needs both characters before the end of the line.
        {"x -> ", L"1/1: ID <x>, 1/3: MINUS, 1/4: ERROR"},
        {"a=>b<-c<", L"1/1: ID <a>, 1/2: CONVARROW, 1/4: ID <b>, 1/5: ARROWLEFT, 1/7: ID <c>, 1/8: ERROR"},
        {"12", L"1/1: INT <12>"},
        {"12.", L"1/1: FLOAT <12.>"},
        {"12.5", L"1/1: FLOAT <12.5>"},
        {"1e5, 1.5E-3, 2.e+7",
         L"1/1: FLTEXP <1e5>, 1/4: COMMA, 1/6: FLTEXP <1.5E-3>, 1/12: COMMA, 1/14: FLTEXP <2.e+7>"},
        // A first token that cannot be scanned fails the open.
        {"1e+x", L"SFOpen failed"},
        {".5", L"SFOpen failed"},
        {"; 1e+x 1e;", L"1/1: SEMIC, 1/3: ERROR <1e+>, 1/8: ERROR <1e>"},
        {"12abc", L"1/1: INT <12>, 1/3: ID <abc>"},
        {"1.2.3", L"1/1: FLOAT <1.2>, 1/4: ERROR, 1/5: INT <3>"},
        {"-5", L"1/1: MINUS, 1/2: INT <5>"},
        {"[m/s]", L"1/1: STRBRA <m/s>"},
        {"[a\\]b]", L"1/1: STRBRA <a]b>"},
        // A comment starts even inside a string, and a string ends with its line.
        {"[a//b]", L"SFOpen failed"},
        {"x = [a//b]\ny", L"1/1: ID <x>, 1/3: ASSIGN, 1/5: ERROR <a>, 2/1: ID <y>"},
        {"\"a \\\"b\\\\\\n\" [\"]\"\"[]", L"1/1: STRQUOT <a \"b\\n>, 1/13: STRBRA <\">, 1/16: STRQUOT, 1/18: STRBRA"},
        {"; \"ab\\\ny", L"1/1: SEMIC, 1/3: ERROR <ab\n>, 2/1: ID <y>"},  // the escape takes the line feed
        {"Unit unit", L"1/1: ID <Unit>, 1/6: KW_UNIT <unit>"},
        {"m\u00b2x", L"1/1: ID <m>, 1/2: ERROR, 1/3: ID <x>"},  // ASCII letters only
        {"0x1F;", L"1/1: HEXNUM <1F>, 1/5: SEMIC"},
        {"0x", L"1/1: INT <0>, 1/2: ID <x>"},
        {"0Xab 0x;", L"1/1: HEXNUM <ab>, 1/6: HEXNUM, 1/8: SEMIC"},
        {"0x0x1F;", L"1/1: HEXNUM <0x1F>, 1/7: SEMIC"},  // the digit counter skips a "0x" of its own
        // Encodings and line ends.
        {"unit [m\xC2\xB2] \r\n;\r\n", kUnit},
        {"\xEF\xBB\xBFunit [m\xC2\xB2]\n;", kUnit},
        {"\xFF\xFEu\0n\0i\0t\0 \0[\0m\0\xB2\0]\0\r\0\n\0;\0"sv, kUnit},
        {"\xFE\xFF\0u\0n\0i\0t\0 \0[\0m\0\xB2\0]\0\n\0;"sv, kUnit},
    };
    for (const auto& [input, expected] : rows) EXPECT_EQ(Tokens(input), expected) << input;
}

TEST_F(ScannerTest, ScanErrorsGoToTheTraceAndFileErrorsToTheLog) {
    EXPECT_EQ(Tokens("x ->"), L"1/1: ID <x>, 1/3: MINUS, 1/4: ERROR");
    const std::wstring prefix = path_.wstring() + L"(1,4): ##### scanner-error:  X_New_Scanfile::Token_Load(), line 1";
    EXPECT_EQ(trace_.Text(), prefix + L" scan err: stCur 0, stNxt 21, chClss 8, chr 62 '>'\n" + prefix +
                                 L": scan err\n");
    EXPECT_TRUE(log_.Entries().empty());
    // A file that cannot be read goes to the log and leaves the scanner closed.
    const std::wstring missing = (folder_.path / "missing.udf").wstring();
    EXPECT_FALSE(scanner_.SFOpen(missing));
    ASSERT_EQ(log_.Entries().size(), 1u);
    EXPECT_EQ(log_.Entries()[0].message, L"X_New_Scanfile::SFOpen(\"" + missing + L"\"): cannot open\n");
    EXPECT_EQ(log_.Entries()[0].line, 393u);
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"-1/0: TOKID_ERROR");
}

TEST_F(ScannerTest, TokensAreHandedOutWithOneTokenOfLookAhead) {
    ASSERT_TRUE(Open("\n// only a comment\n  unit   // note\nx >b\n"));
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"3/3: TOKID_KW_UNIT <unit>");
    EXPECT_EQ(scanner_.PositionPrefix(-1, -1), path_.wstring() + L"(3,2): ");
    X_Token token;
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_KW_UNIT);
    // The load behind x fails, so x is handed out as an error.
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ERROR);
    EXPECT_EQ(TokenPrintForm(token), L"4/1: TOKID_ERROR <x>");
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ERROR);
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ID);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(scanner_.TokenGet(token), TOKID_EOF);
    EXPECT_EQ(TokenPrintForm(token), L"4/1: TOKID_EOF");
    EXPECT_EQ(log_.Messages(),
              std::vector<std::wstring>{L"X_New_Scanfile::TokenGet(^4/1: TOKID_ID <x>): Token_Load err\n"});
}

}  // namespace
