// Findings of a read: every kind of error and warning at its line and column
// with its exact message, one error per statement however many it counts,
// the log unchanged beside them, and reads on two threads that keep their
// findings apart.
#include <algorithm>
#include <iterator>
#include <thread>

#include "dscr/parse_test_support.h"

namespace {

// "line:column E|W message", and the library's text after " | " when there is one.
std::wstring RecordText(const QtrDiagnostic& record) {
    std::wstring text = std::to_wstring(record.line) + L":" + std::to_wstring(record.column) +
                        (record.severity == QtrSeverity::Error ? L" E " : L" W ") + record.message;
    if (!record.libraryText.empty()) text += L" | " + record.libraryText;
    return text;
}

class Diagnostics : public ParseTest {
protected:
    // Imports `text` from a scratch file; the records, as RecordText, that
    // belong to that file.
    Messages Findings(const std::string& text, bool expectedResult) {
        path_ = WriteFile("test.dscr", text);
        QtrDiagnostics records;
        QtrAdminDscr admin;
        EXPECT_EQ(admin.Import_Parse(path_.c_str(), records), expectedResult);
        Messages texts;
        for (const QtrDiagnostic& record : records) {
            EXPECT_EQ(record.file, path_);
            texts.push_back(RecordText(record));
        }
        return texts;
    }
};

TEST_F(Diagnostics, SyntaxErrorsNameWhatWasFoundAndExpected) {
    const struct { std::string text; Messages findings; } rows[] = {
        {"category A { unit m = 1; }",
         {L"1:21 E Found '=' where ',' or ';' was expected. | parse error\n"}},
        {"category A {\n  unit m, km\n  convert km <- m * 1000;\n}",
         {L"2:13 E Expected ',' or ';' at the end of this line, but the next line begins with 'convert' (line 3). "
          L"| parse error\n"}},
        {"category A { unit [m]; }",
         {L"1:19 E Found the bracketed text [m] (names are quoted with \") where a name or a quoted name was "
          L"expected. | parse error\n"}},
        {"", {L"1:1 E Unexpected end of file: the file holds no category. A description file needs at least one "
              L"block such as 'category Length { unit m; }'. | parse error\n"}},
        {"// only a comment\n\n", {L"1:1 E Unexpected end of file: the file holds no category. A description file "
                                  L"needs at least one block such as 'category Length { unit m; }'. | parse error\n"}},
        {"category A {\n  unit m;\n// end\n",
         {L"3:1 E Unexpected end of file; expected '}'. Complete the last statement or block. | parse error\n"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Findings(row.text, false), row.findings);
    }
}

TEST_F(Diagnostics, ScanErrorsStandAtTheirCharacter) {
    const struct { std::string text; Messages findings; } rows[] = {
        {"category A {\n  unit m: .5; }",
         {L"2:11 E The character '.' cannot start a word, number or sign here. Remove it, or quote a name that "
          L"contains it. | X_New_Scanfile::Token_Load(), line 2 scan err: stCur 0, stNxt 21, chClss 4, chr 46 '.'\n"}},
        {"category A { unit m: 1e+x; }",
         {L"1:25 E A number's exponent needs digits after 'e', as in 1.5e-3. | X_New_Scanfile::Token_Load(), line 1 "
          L"scan err: stCur 4, stNxt 18, chClss 0, chr 120 'x'\n"}},
        {"category A { unit \"metre; }",
         {L"1:19 E This quoted name is not closed with '\"' on its line (a '//' inside it starts a comment). | "
          L"X_New_Scanfile::Token_Load(), line 1 scan err: stCur 6, stNxt 20, chClss 9, chr 10 '\n'\n"}},
        {"?category A { }",
         {L"1:1 E The character '?' cannot start a word, number or sign here. Remove it, or quote a name that "
          L"contains it. | X_New_Scanfile::Token_Load(), line 1 scan err: stCur 0, stNxt 21, chClss 8, chr 63 '?'\n"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Findings(row.text, false), row.findings);
    }
}

TEST_F(Diagnostics, StatementErrorsAreExplained) {
    const std::string head = "category A {\n  unit m, km;\n  defaultintern m;\n  convert km <- m * 1000;\n";
    const struct { std::string body; bool result; Messages findings; } rows[] = {
        {"  defaultintern x;\n", false,
         {L"5:17 E 'x' is not a unit of category 'A' declared before this statement. Declare it with a unit "
          L"statement first, or correct the name. | unknown default internal unit\n"}},
        {"  defaultsurface y;\n", false,
         {L"5:18 E 'y' is not a unit of category 'A' declared before this statement. Declare it with a unit "
          L"statement first, or correct the name. | unknown default surface unit\n"}},
        {"  unit g: n;\n  convert g <- m;\n", false,
         {L"5:11 E A constant number is needed here, such as 1000 or 2 * 3; it cannot contain a unit name. Replace "
          L"the names by numbers. | no constant expression\n"}},
        {"  convert km <- 1000;\n", false,
         {L"5:11 E The formula must be the source unit times or divided by one non-zero number, plus or minus one "
          L"number, as in 'convert degF <- degC * 1.8 + 32'. Rewrite it in that form. | Conv_GetFromRight(): error "
          L"in formula\n"}},
        // A sign run in a format clause misses an operand; the error stands at
        // the gap, not at what the parser read in its place.
        {"  convert m <- km / 1000 format --3, 3;\n", false,
         {L"5:34 E An operand is missing here: a sign or an operator has no number or unit beside it, as in '--3' "
          L"or 'm * ;', and the value read just before would stand in for it. Write the number or unit that "
          L"belongs here, as in 'format -3, 3' or 'convert km <- m / 1000'. | no constant expression\n"}},
        {"  convert m <- km / 0;\n", false,
         {L"5:21 E This expression divides by zero. Use a divisor other than zero. | X_ParsNode::Tree_ConstCalc: "
          L"div by zero!!!\n"}},
        {"  convert k <- m;\n", true,
         {L"5:11 E 'k' is not a unit of category 'A', so this rule is ignored. Declare it with 'unit k;' before "
          L"this statement, or correct the name. | Conv_Finish: unknown target unit \"k\"\n"}},
        {"  convert km <- g * 1000;\n", true,
         {L"5:17 E 'g' is not a unit of category 'A', so this rule is ignored. Declare it with 'unit g;' before "
          L"this statement, or correct the name. | Conv_Finish: unknown src unit \"g\"\n"}},
        {"  unit x, y;\n  convert y <- x * 2;\n", true,
         {L"5:8 E No rule links the unit 'x' with 'm' of category 'A', directly or through other units, so they "
          L"cannot be converted into each other. Add a convert statement such as 'convert x <- m * 1000;' with the "
          L"right factor. | Cat_Finish: ConvInfoComplete misses some conversion rules\n"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        EXPECT_EQ(Findings(head + row.body + "}\n", row.result), row.findings);
    }
}

TEST_F(Diagnostics, LimitsAreExplained) {
    const std::string head = "category A { unit m, k;\n convert k <- ";
    EXPECT_EQ(Findings(head + "1" + Repeated(" + 1", 1001) + "; }", false),
              Messages{L"2:15 E This expression is too long or nested too deeply (over 1000 levels or 10000 parts). "
                       L"Write it shorter, without runs of signs or parentheses. | expression too deep\n"});
    EXPECT_EQ(Findings("category A { unit m: " + std::string(10000, '(') + " }", false),
              Messages{L"1:10014 E The text is nested too deeply to be read. Remove the extra parentheses. | parser "
                       L"stack overflow\n"});
}

TEST_F(Diagnostics, WarningsLeaveTheResultAsItWas) {
    const struct { std::string text; Messages findings; } rows[] = {
        {"category A {\n  unit m, km;\n  unit m;\n  defaultintern m;\n  convert km <- m * 1000;\n}",
         {L"3:8 W The unit 'm' of category 'A' is declared already on line 2; this declaration is ignored. Remove "
          L"one of them."}},
        {"category A { unit m; defaultintern m; }\ncategory B {\n  unit m;\n}",
         {L"3:8 W The name 'm' already belongs to the unit 'm' of category 'A'. Lookups by this name find that one, "
          L"not this unit. Rename one of them.",
          L"2:10 W Category 'B' has no default unit, so a lookup by the category's name finds no unit. Add "
          L"'defaultintern <unit>;' to its block; it also gives the display unit unless 'defaultsurface' names "
          L"another."}},
        {"category A { unit m; defaultintern m; }\ncategory m { unit g; defaultintern g; }",
         {L"2:10 W The name 'm' already belongs to the unit 'm' of category 'A'. Lookups by this name find that "
          L"one, so this category and its units cannot be found by name. Rename the category."}},
        {"category A {\n  unit m, km;\n  defaultintern m;\n  convert km <- m * 1000;\n  convert km <- m * 1e3;\n}",
         {L"5:3 W A rule from 'm' to 'km' is given already on line 4; this later convert statement is ignored. "
          L"Remove one of them."}},
        {"category A {\n  unit m;\n}",
         {L"1:10 W Category 'A' has no default unit, so a lookup by the category's name finds no unit. Add "
          L"'defaultintern <unit>;' to its block; it also gives the display unit unless 'defaultsurface' names "
          L"another."}},
        {"category A {\n  unit m, km;\n  defaultintern m;\n  convert km <- m * 1000 format 3, 0;\n}",
         {L"4:33 W Only one of the format numbers (3, 0) is not zero; a printed catalogue leaves such a format "
          L"clause out, so it would not read back the same. Make both numbers non-zero, or both zero."}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Findings(row.text, true), row.findings);
    }
}

TEST_F(Diagnostics, AFileThatCannotBeFoundIsAFindingAboutTheWholeFile) {
    QtrDiagnostics records;
    QtrAdminDscr admin;
    EXPECT_FALSE(admin.Import_Parse(L"no/such/file.dscr", records));
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].file, L"no/such/file.dscr");
    EXPECT_EQ(RecordText(records[0]),
              L"0:0 E The file was not found: neither as given nor in the folders searched for description files. "
              L"Check its name and location. | QtrAdminDscr::Import_Parse(\"no/such/file.dscr\"): file not found\n");
}

// Each run of ten signs counts thousands of errors; only the first of each
// statement is written to the trace and recorded, and the log is the same
// whether findings are collected or not. (The rule itself is read, so every
// later statement also repeats it.)
TEST_F(Diagnostics, OneStatementWritesOneErrorAndTheLogStaysAsItWas) {
    std::string text = "category L {\n  unit m, k;\n  defaultintern m;\n";
    for (int i = 0; i < 20; ++i) text += "  convert k <- m format ----------3, 0;\n";
    const std::wstring path = WriteFile("signs.dscr", text + "}\n");
    QtrAdminDscr plain;
    EXPECT_FALSE(plain.Import_Parse(path.c_str()));
    const Messages plainLog = log_.Messages();
    log_.Clear();
    trace_.Clear();
    QtrDiagnostics records;
    QtrAdminDscr collecting;
    EXPECT_FALSE(collecting.Import_Parse(path.c_str(), records));
    EXPECT_EQ(log_.Messages(), plainLog);
    QtrDiagnostics errors;
    std::ranges::copy_if(records, std::back_inserter(errors),
                         [](const QtrDiagnostic& record) { return record.severity == QtrSeverity::Error; });
    ASSERT_EQ(errors.size(), 20u);
    EXPECT_EQ(records.size(), 39u);
    for (size_t i = 0; i < errors.size(); ++i) {
        EXPECT_EQ(errors[i].line, static_cast<int>(i) + 4);
        EXPECT_THAT(errors[i].libraryText, testing::StartsWith(L"X_ParsNode::Tree_Opt: "));
    }
    const auto isParserError = [](const std::wstring& text) { return text.find(L"parser-error") != text.npos; };
    EXPECT_EQ(std::ranges::count_if(trace_.Texts(), isParserError), 20);
}

TEST_F(Diagnostics, ReadsOnTwoThreadsKeepTheirFindingsApart) {
    const std::wstring first = WriteFile("first.dscr", "category A {\n  unit m;\n  defaultintern x;\n}\n");
    const std::wstring second = WriteFile("second.dscr", "category B {\n  unit g, g;\n  convert kg <- g;\n}\n");
    const auto read = [](const std::wstring& path) {
        QtrDiagnostics records;
        QtrAdminDscr admin;
        admin.Import_Parse(path.c_str(), records);
        Messages texts;
        for (const QtrDiagnostic& record : records) texts.push_back(record.file + L" " + RecordText(record));
        return texts;
    };
    const QtrLogSink previousLog = QtrSetLogSink({});
    const Messages firstAlone = read(first), secondAlone = read(second);
    std::vector<Messages> firstRuns(30), secondRuns(30);
    std::thread firstReader([&] { for (Messages& run : firstRuns) run = read(first); });
    std::thread secondReader([&] { for (Messages& run : secondRuns) run = read(second); });
    firstReader.join();
    secondReader.join();
    QtrSetLogSink(previousLog);
    EXPECT_EQ(firstAlone.size(), 2u);
    EXPECT_EQ(secondAlone.size(), 3u);
    EXPECT_THAT(firstRuns, testing::Each(firstAlone));
    EXPECT_THAT(secondRuns, testing::Each(secondAlone));
}

}  // namespace
