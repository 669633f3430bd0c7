// The description-language scanner, driven through real files in a temporary
// folder: tokens and their positions, scan errors and their reports, the
// token hand-out with one token of look-ahead, encodings and hostile input.
#include "dscr/scanner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "quantor/sinks.h"

namespace {

using Strings = std::vector<std::wstring>;
using namespace std::string_view_literals;

class ScannerTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "quantor-scanner-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
        previousLog_ = QtrSetLogSink([this](const QtrLogEntry& entry) { log_.push_back(entry); });
        previousTrace_ = QtrSetTraceSink([this](const std::wstring& text) { trace_.push_back(text); });
    }
    void TearDown() override {
        scanner_.Close();
        QtrSetLogSink(previousLog_);
        QtrSetTraceSink(previousTrace_);
        std::filesystem::remove_all(folder_);
    }

    // Writes `bytes` into a new file of the temporary folder and opens the
    // scanner on it.
    bool Open(std::string_view bytes) {
        path_ = folder_ / ("input" + std::to_string(++fileCount_) + ".udf");
        std::ofstream(path_, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return scanner_.SFOpen(path_.wstring());
    }

    // The print forms of the loaded token and every one that Token_Load
    // scans after it, up to the end of the file.
    Strings Tokens(std::string_view bytes) {
        if (!Open(bytes)) return {L"SFOpen failed"};
        Strings tokens;
        for (size_t guard = 0; guard <= bytes.size() + 1; ++guard) {
            if (scanner_.CurrentToken().id == TOKID_EOF) return tokens;
            tokens.push_back(TokenPrintForm(scanner_.CurrentToken()));
            const bool loaded = scanner_.Token_Load();
            EXPECT_EQ(loaded, scanner_.CurrentToken().id != TOKID_ERROR);
        }
        ADD_FAILURE() << "no end of file";
        return tokens;
    }

    std::wstring FullPath() const { return std::filesystem::canonical(path_).wstring(); }

    Strings LogMessages() const {
        Strings messages;
        for (const QtrLogEntry& entry : log_) messages.push_back(entry.message);
        return messages;
    }

    std::filesystem::path folder_;
    std::filesystem::path path_;
    int fileCount_ = 0;
    X_New_Scanfile scanner_;
    std::vector<QtrLogEntry> log_;
    Strings trace_;
    QtrLogSink previousLog_;
    QtrTraceSink previousTrace_;
};

TEST_F(ScannerTest, OperatorsAndTheEndOfLineLimitOfPairs) {
    EXPECT_EQ(Tokens("a->b"), (Strings{L"1/1: TOKID_ID <a>", L"1/2: TOKID_ARROWRIGHT", L"1/4: TOKID_ID <b>"}));
    EXPECT_EQ(Tokens("x -> "), (Strings{L"1/1: TOKID_ID <x>", L"1/3: TOKID_MINUS", L"1/4: TOKID_ERROR"}));
    EXPECT_EQ(Tokens("a=>b<-c"), (Strings{L"1/1: TOKID_ID <a>", L"1/2: TOKID_CONVARROW", L"1/4: TOKID_ID <b>",
                                          L"1/5: TOKID_ARROWLEFT", L"1/7: TOKID_ID <c>"}));
    EXPECT_EQ(Tokens("x<-"), (Strings{L"1/1: TOKID_ID <x>", L"1/2: TOKID_ERROR", L"1/3: TOKID_MINUS"}));
    EXPECT_EQ(Tokens("(){}*+,-/:;="),
              (Strings{L"1/1: TOKID_BRALEFT", L"1/2: TOKID_BRARGHT", L"1/3: TOKID_CURLBLEFT", L"1/4: TOKID_CURLBRGHT",
                       L"1/5: TOKID_MULT", L"1/6: TOKID_PLUS", L"1/7: TOKID_COMMA", L"1/8: TOKID_MINUS",
                       L"1/9: TOKID_DIV", L"1/10: TOKID_COLON", L"1/11: TOKID_SEMIC", L"1/12: TOKID_ASSIGN"}));
}

TEST_F(ScannerTest, Numbers) {
    EXPECT_EQ(Tokens("12"), Strings{L"1/1: TOKID_INT <12>"});
    EXPECT_EQ(Tokens("12."), Strings{L"1/1: TOKID_FLOAT <12.>"});
    EXPECT_EQ(Tokens("12.5"), Strings{L"1/1: TOKID_FLOAT <12.5>"});
    EXPECT_EQ(Tokens("1e5, 1.5E-3, 2.e+7"), (Strings{L"1/1: TOKID_FLTEXP <1e5>", L"1/4: TOKID_COMMA",
                                                     L"1/6: TOKID_FLTEXP <1.5E-3>", L"1/12: TOKID_COMMA",
                                                     L"1/14: TOKID_FLTEXP <2.e+7>"}));
    EXPECT_EQ(Tokens("12abc"), (Strings{L"1/1: TOKID_INT <12>", L"1/3: TOKID_ID <abc>"}));
    EXPECT_EQ(Tokens("1.2.3"), (Strings{L"1/1: TOKID_FLOAT <1.2>", L"1/4: TOKID_ERROR", L"1/5: TOKID_INT <3>"}));
    EXPECT_EQ(Tokens("-5"), (Strings{L"1/1: TOKID_MINUS", L"1/2: TOKID_INT <5>"}));
    EXPECT_EQ(Tokens("; 1e+x 1e;"), (Strings{L"1/1: TOKID_SEMIC", L"1/3: TOKID_ERROR <1e+>",
                                            L"1/8: TOKID_ERROR <1e>"}));
}

TEST_F(ScannerTest, HexadecimalNumbers) {
    EXPECT_EQ(Tokens("0x1F;"), (Strings{L"1/1: TOKID_HEXNUM <1F>", L"1/5: TOKID_SEMIC"}));
    EXPECT_EQ(Tokens("0x"), (Strings{L"1/1: TOKID_INT <0>", L"1/2: TOKID_ID <x>"}));
    EXPECT_EQ(Tokens("0Xab 0x;"), (Strings{L"1/1: TOKID_HEXNUM <ab>", L"1/6: TOKID_HEXNUM", L"1/8: TOKID_SEMIC"}));
    // The digit counter skips a second "0x" of its own and counts it.
    EXPECT_EQ(Tokens("0x0x1F;"), (Strings{L"1/1: TOKID_HEXNUM <0x1F>", L"1/7: TOKID_SEMIC"}));
    EXPECT_EQ(Tokens("0x123456789abcdef0 +"), (Strings{L"1/1: TOKID_HEXNUM <123456789abcdef0>", L"1/20: TOKID_PLUS"}));
}

TEST_F(ScannerTest, IdentifiersAndCaseSensitiveKeywords) {
    EXPECT_EQ(Tokens("Unit unit"), (Strings{L"1/1: TOKID_ID <Unit>", L"1/6: TOKID_KW_UNIT <unit>"}));
    EXPECT_EQ(Tokens("category convert defaultintern\ndefaultsurface format UNIT _e2"),
              (Strings{L"1/1: TOKID_KW_CATEG <category>", L"1/10: TOKID_KW_CONV <convert>",
                       L"1/18: TOKID_KW_DFLTINTRN <defaultintern>", L"2/1: TOKID_KW_DFLTSURFC <defaultsurface>",
                       L"2/16: TOKID_KW_FORMAT <format>", L"2/23: TOKID_ID <UNIT>", L"2/28: TOKID_ID <_e2>"}));
    // Letters are those of the "C" locale only.
    EXPECT_EQ(Tokens("m\u00b2x"), (Strings{L"1/1: TOKID_ID <m>", L"1/2: TOKID_ERROR", L"1/3: TOKID_ID <x>"}));
}

TEST_F(ScannerTest, StringsResolveEscapesAndEndWithTheirLine) {
    EXPECT_EQ(Tokens("[m/s]"), Strings{L"1/1: TOKID_STRBRA <m/s>"});
    EXPECT_EQ(Tokens("[a\\]b]"), Strings{L"1/1: TOKID_STRBRA <a]b>"});
    EXPECT_EQ(Tokens("\"a \\\"b\\\\\\n\" [\"]"),
              (Strings{L"1/1: TOKID_STRQUOT <a \"b\\n>", L"1/13: TOKID_STRBRA <\">"}));
    EXPECT_EQ(Tokens("\"\"[]"), (Strings{L"1/1: TOKID_STRQUOT", L"1/3: TOKID_STRBRA"}));
    // A comment starts even inside a string.
    EXPECT_EQ(Tokens("[a//b]"), Strings{L"SFOpen failed"});
    EXPECT_EQ(Tokens("x = [a//b]\ny"), (Strings{L"1/1: TOKID_ID <x>", L"1/3: TOKID_ASSIGN", L"1/5: TOKID_ERROR <a>",
                                                L"2/1: TOKID_ID <y>"}));
    EXPECT_EQ(Tokens("x \"abc\ny"), (Strings{L"1/1: TOKID_ID <x>", L"1/3: TOKID_ERROR <abc>", L"2/1: TOKID_ID <y>"}));
    // An escape at the end of the line takes the line feed and the string stays open.
    EXPECT_EQ(Tokens("; \"ab\\\ny"), (Strings{L"1/1: TOKID_SEMIC", L"1/3: TOKID_ERROR <ab\n>", L"2/1: TOKID_ID <y>"}));
}

TEST_F(ScannerTest, ScanErrorsGoToTheTraceAndScanningResumes) {
    EXPECT_EQ(Tokens("x ->"), (Strings{L"1/1: TOKID_ID <x>", L"1/3: TOKID_MINUS", L"1/4: TOKID_ERROR"}));
    const std::wstring prefix = FullPath() + L"(1,4): ##### scanner-error:  X_New_Scanfile::Token_Load(), line 1";
    EXPECT_EQ(trace_, (Strings{prefix + L" scan err: stCur 0, stNxt 21, chClss 8, chr 62 '>'\n",
                               prefix + L": scan err\n"}));
    EXPECT_TRUE(log_.empty());
    trace_.clear();
    EXPECT_EQ(Tokens("\n; 1e+x"), (Strings{L"2/1: TOKID_SEMIC", L"2/3: TOKID_ERROR <1e+>"}));
    EXPECT_EQ(trace_.at(0), FullPath() + L"(2,6): ##### scanner-error:  X_New_Scanfile::Token_Load(), line 2 scan "
                                         L"err: stCur 4, stNxt 18, chClss 0, chr 120 'x'\n");
}

TEST_F(ScannerTest, AFirstTokenThatCannotBeScannedFailsTheOpen) {
    EXPECT_FALSE(Open(" .5"));
    ASSERT_EQ(trace_.size(), 3u);
    EXPECT_EQ(trace_[2], FullPath() + L"(1,2): ##### scanner-error:  X_New_Scanfile::SFOpen(\"" + path_.wstring() +
                             L"\"): cannot get 1. token\n");
    EXPECT_EQ(scanner_.FileName(), L"");
    EXPECT_EQ(scanner_.CurrentToken().id, TOKID_ERROR);
    EXPECT_EQ(Tokens("1e+x"), Strings{L"SFOpen failed"});
}

TEST_F(ScannerTest, PositionsCountEveryPhysicalLine) {
    ASSERT_TRUE(Open("\n// only a comment\n  abc   // note\n\t\n"));
    const X_Token& first = scanner_.CurrentToken();
    EXPECT_EQ(first.line, 3);
    EXPECT_EQ(first.column, 2);
    EXPECT_EQ(TokenPrintForm(first), L"3/3: TOKID_ID <abc>");
    EXPECT_EQ(scanner_.PositionPrefix(-1, -1), FullPath() + L"(3,2): ");
    EXPECT_EQ(scanner_.PositionPrefix(5, 7), FullPath() + L"(5,7): ");
    EXPECT_EQ(scanner_.FileName(), FullPath());
    EXPECT_EQ(scanner_.LineNumber(), 3);
    ASSERT_TRUE(scanner_.Token_Load());
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"4/1: TOKID_EOF");
    EXPECT_EQ(scanner_.LineNumber(), 4);
}

TEST_F(ScannerTest, TheEndOfTheFileRepeats) {
    ASSERT_TRUE(Open("a"));
    X_Token token;
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ID);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(scanner_.TokenGet(token), TOKID_EOF);
        EXPECT_EQ(TokenPrintForm(token), L"1/1: TOKID_EOF");
    }
    ASSERT_TRUE(Open(""));
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"0/1: TOKID_EOF");
}

TEST_F(ScannerTest, TokenGetMarksTheTokenBeforeAScanError) {
    ASSERT_TRUE(Open("a >b"));
    X_Token token;
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ERROR);
    EXPECT_EQ(TokenPrintForm(token), L"1/1: TOKID_ERROR <a>");
    EXPECT_EQ(LogMessages(), Strings{L"X_New_Scanfile::TokenGet(^1/1: TOKID_ID <a>): Token_Load err\n"});
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ERROR);
    EXPECT_EQ(TokenPrintForm(token), L"1/3: TOKID_ERROR");
    EXPECT_EQ(scanner_.TokenGet(token), TOKID_ID);
    EXPECT_EQ(TokenPrintForm(token), L"1/4: TOKID_ID <b>");
    EXPECT_EQ(log_.size(), 1u);
}

TEST_F(ScannerTest, TokenUseConsumesOnlyTheExpectedToken) {
    ASSERT_TRUE(Open("unit x >"));
    X_Token token;
    EXPECT_TRUE(scanner_.TokenUse(TOKID_KW_UNIT, token));
    EXPECT_EQ(TokenPrintForm(token), L"1/1: TOKID_KW_UNIT <unit>");
    EXPECT_FALSE(scanner_.TokenUse(TOKID_SEMIC, token));
    EXPECT_EQ(TokenPrintForm(token), L"1/1: TOKID_KW_UNIT <unit>");
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"1/6: TOKID_ID <x>");
    EXPECT_FALSE(scanner_.TokenUse(TOKID_ID, token));
    EXPECT_EQ(LogMessages(), (Strings{L"X_New_Scanfile::TokenUse(,TOKID_SEMIC): TOKID_ID avail\n",
                                      L"X_New_Scanfile::TokenGet(^1/6: TOKID_ID <x>): Token_Load err\n",
                                      L"X_New_Scanfile::TokenUse(,TOKID_ID): error\n"}));
}

TEST_F(ScannerTest, AMissingFileIsLogged) {
    const std::wstring missing = (folder_ / "missing.udf").wstring();
    EXPECT_FALSE(scanner_.SFOpen(missing));
    ASSERT_EQ(log_.size(), 1u);
    EXPECT_EQ(log_[0].message, L"X_New_Scanfile::SFOpen(\"" + missing + L"\"): cannot open\n");
    EXPECT_EQ(log_[0].line, 393u);
    EXPECT_EQ(scanner_.CurrentToken().id, TOKID_ERROR);
    EXPECT_EQ(scanner_.LineNumber(), -1);
}

TEST_F(ScannerTest, CloseResetsAndASecondOpenStartsOver) {
    ASSERT_TRUE(Open("a b"));
    ASSERT_TRUE(Open("\n c"));
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"2/2: TOKID_ID <c>");
    scanner_.Close();
    EXPECT_EQ(TokenPrintForm(scanner_.CurrentToken()), L"-1/0: TOKID_ERROR");
    EXPECT_EQ(scanner_.FileName(), L"");
    EXPECT_EQ(scanner_.LineNumber(), -1);
    // A closed scanner is at the end of its input.
    EXPECT_TRUE(scanner_.Token_Load());
    EXPECT_EQ(scanner_.CurrentToken().id, TOKID_EOF);
}

TEST_F(ScannerTest, TokenIdNames) {
    EXPECT_EQ(TokenIdName(TOKID_ERROR), L"TOKID_ERROR");
    EXPECT_EQ(TokenIdName(272), L"TOKID_FLOAT");
    EXPECT_EQ(TokenIdName(282), L"TOKID_KW_UNIT");
    EXPECT_EQ(TokenIdName(TOKID_STRQUOT), L"TOKID_STRQUOT");
    EXPECT_EQ(TokenIdName(300), L"TE_TokenId 300 ??");
    EXPECT_EQ(TokenIdName(257), L"TE_TokenId 257 ??");
    EXPECT_EQ(TokenIdName(289), L"TE_TokenId 289 ??");
}

TEST_F(ScannerTest, EncodingsAndLineEnds) {
    const Strings expected{L"1/1: TOKID_KW_UNIT <unit>", L"1/6: TOKID_STRBRA <m\u00b2>", L"2/1: TOKID_SEMIC"};
    EXPECT_EQ(Tokens("unit [m\xC2\xB2]\n;"), expected);
    EXPECT_EQ(Tokens("unit [m\xC2\xB2] \r\n;\r\n"), expected);
    EXPECT_EQ(Tokens("\xEF\xBB\xBFunit [m\xC2\xB2]\n;"), expected);
    EXPECT_EQ(Tokens("\xFF\xFEu\0n\0i\0t\0 \0[\0m\0\xB2\0]\0\r\0\n\0;\0"sv), expected);
    EXPECT_EQ(Tokens("\xFE\xFF\0u\0n\0i\0t\0 \0[\0m\0\xB2\0]\0\n\0;"sv), expected);
}

TEST_F(ScannerTest, AVeryLongLine) {
    const std::string name(200000, 'n');
    const Strings tokens = Tokens(name + " [" + std::string(100000, 's') + "];");
    ASSERT_EQ(tokens.size(), 3u);
    EXPECT_EQ(tokens[0].size(), std::wstring(L"1/1: TOKID_ID <>").size() + name.size());
    EXPECT_EQ(tokens[1].substr(0, 27), L"1/200002: TOKID_STRBRA <sss");
    EXPECT_EQ(tokens[2], L"1/300004: TOKID_SEMIC");
}

TEST_F(ScannerTest, RandomBytesEndInEndOfFile) {
    // Mostly characters that the scanner knows, so that every state is reached.
    constexpr std::string_view kFamiliar = "0xeE.+-[]\"\\/<=>; \nab9";
    std::mt19937 random(7);
    for (int round = 0; round < 4; ++round) {
        std::string bytes = "start\n";
        for (int i = 0; i < 20000; ++i) {
            const unsigned pick = random() & 0xFF;
            bytes += pick < 160 ? kFamiliar[pick % kFamiliar.size()] : static_cast<char>(pick);
        }
        ASSERT_TRUE(Open(bytes));
        X_Token token;
        size_t fetched = 0;
        while (scanner_.TokenGet(token) != TOKID_EOF && fetched <= bytes.size()) ++fetched;
        EXPECT_EQ(token.id, TOKID_EOF);
    }
}

}  // namespace
