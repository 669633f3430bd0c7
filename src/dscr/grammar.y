/* The grammar of the unit description language: an LALR(1) parser over the
 * scanner's tokens. Its reductions build expression trees and call the
 * semantic actions that fill the administration. The rules stand in their
 * fixed order, numbered 1 to 44 as the parser numbers them. The first syntax
 * error ends the parse (result 1); a full stack of 10000 entries ends it
 * with "parser stack overflow" (result 2); the trees still on the stack are
 * freed either way. The parser reduces without a look-ahead wherever the
 * tables allow only one action, so a leaf is made from the token just
 * shifted, which is still the scanner's last token.
 */

%require "3.8"
%define api.pure full
%define api.token.prefix {GRAMMAR_}
%define lr.type lalr
%define lr.default-reduction most
%define parse.error custom
%parse-param {X_DscrParse& parse}
%lex-param {X_DscrParse& parse}

%code requires {
#include "dscr/parser_driver.h"
}

%code {
#include <string_view>
#include <vector>

#define YYINITDEPTH 200
#define YYMAXDEPTH 10000

static_assert(int{GRAMMAR_TOKID_ERROR} == int{TOKID_ERROR} && int{GRAMMAR_TOKID_STRQUOT} == int{TOKID_STRQUOT},
              "the grammar's token numbers are the scanner's token ids");

int yylex(YYSTYPE* value, X_DscrParse& parse);
void yyerror(X_DscrParse& parse, const char* message);
}

/* The scanner's token ids. */
%token TOKID_ERROR 258 TOKID_EOF 259 TOKID_EOL 260 TOKID_ARROWLEFT 261 TOKID_ARROWRIGHT 262
%token TOKID_ASSIGN 263 TOKID_BRALEFT 264 TOKID_BRARGHT 265 TOKID_COLON 266 TOKID_COMMA 267
%token TOKID_CONVARROW 268 TOKID_CURLBLEFT 269 TOKID_CURLBRGHT 270 TOKID_DIV 271 TOKID_FLOAT 272
%token TOKID_FLTEXP 273 TOKID_HEXNUM 274 TOKID_ID 275 TOKID_INT 276 TOKID_KW_CATEG 277
%token TOKID_KW_CONV 278 TOKID_KW_DFLTINTRN 279 TOKID_KW_DFLTSURFC 280 TOKID_KW_FORMAT 281
%token TOKID_KW_UNIT 282 TOKID_MINUS 283 TOKID_MULT 284 TOKID_PLUS 285 TOKID_SEMIC 286
%token TOKID_STRBRA 287 TOKID_STRQUOT 288

%union {
    X_Expr expr;
}

/* Expression values own their trees until a reduction hands them to a
   semantic action (parse.Take). An empty operand copies the value of the
   most recent reduction: the parse object records every value it builds,
   and a rule without an action passes on the value just recorded. An
   operator node that the parse object refuses (nested too deep) has been
   reported and freed; the parse then ends as after a syntax error. */
%type <expr> conversion_formula value_clause const_expr expr term factor primary name integer
%destructor { parse.Free($$); } <expr>

/* Where an operand may begin, "+" and "-" could start a signed operand or
   follow an empty operand as an operator; all 20 such conflicts are
   resolved by shifting, which reads them as signs. */
%expect 20

%%

description
    : category_list
    ;

category_list
    : category_list category
    | category
    ;

category
    : TOKID_KW_CATEG category_head TOKID_CURLBLEFT category_body TOKID_CURLBRGHT
                                        { Cat_Finish(parse.actions); }
    ;

category_head
    : name value_clause                 { Cat_Begin(parse.actions, parse.Take($1), parse.Take($2)); }
    ;

category_body
    : statement_list
    | %empty
    ;

statement_list
    : statement
    | statement_list statement
    ;

statement
    : conversion_statement
    | unit_statement
    | default_statement
    ;

default_statement
    : TOKID_KW_DFLTINTRN name TOKID_SEMIC   { Cat_DefaultIntern(parse.actions, parse.Take($2)); }
    | TOKID_KW_DFLTSURFC name TOKID_SEMIC   { Cat_DefaultSurface(parse.actions, parse.Take($2)); }
    ;

unit_statement
    : TOKID_KW_UNIT unit_list TOKID_SEMIC
    ;

unit_list
    : unit_def
    | unit_list TOKID_COMMA unit_def
    ;

unit_def
    : name value_clause                 { Unit_Begin(parse.actions, parse.Take($1), parse.Take($2)); }
    ;

conversion_statement
    : TOKID_KW_CONV conversion_formula format_clause TOKID_SEMIC
                                        { Conv_Finish(parse.actions, parse.Take($2)); }
    ;

conversion_formula
    : expr TOKID_ARROWLEFT expr         { if (!parse.Formula($$, $1, $3)) YYABORT; }
    ;

format_clause
    : TOKID_KW_FORMAT const_expr TOKID_COMMA const_expr
                                        { Conv_FmtShft(parse.actions, parse.Take($2), parse.Take($4)); }
    | %empty
    ;

value_clause
    : TOKID_COLON const_expr            { $$ = $2; }
    | %empty                            { $$ = parse.NoValue(); }
    ;

const_expr
    : expr                              { $$ = parse.ConstExpr($1); }
    ;

expr
    : term
    | expr TOKID_PLUS term              { if (!parse.Operator($$, ND_PLUS, $1, $3)) YYABORT; }
    | expr TOKID_MINUS term             { if (!parse.Operator($$, ND_MINUS, $1, $3)) YYABORT; }
    ;

term
    : factor
    | term TOKID_MULT factor            { if (!parse.Operator($$, ND_MULT, $1, $3)) YYABORT; }
    | term TOKID_DIV factor             { if (!parse.Operator($$, ND_DIV, $1, $3)) YYABORT; }
    ;

factor
    : TOKID_PLUS primary                { $$ = $2; }
    | TOKID_MINUS primary               { if (!parse.Operator($$, ND_UNMINUS, $2, kNoExpr)) YYABORT; }
    | primary
    ;

primary
    : %empty                            { $$ = parse.EmptyOperand(); }
    | TOKID_FLOAT                       { $$ = parse.Leaf(ND_FLOAT); }
    | TOKID_FLTEXP                      { $$ = parse.Leaf(ND_FLTEXP); }
    | integer
    | name
    | TOKID_BRALEFT expr TOKID_BRARGHT  { $$ = $2; }
    ;

name
    : TOKID_ID                          { $$ = parse.Leaf(ND_NAME); }
    | TOKID_STRQUOT                     { $$ = parse.Leaf(ND_NAME); }
    ;

integer
    : TOKID_INT                         { $$ = parse.Leaf(ND_INT); }
    | TOKID_HEXNUM                      { $$ = parse.Leaf(ND_HEXNUM); }
    ;

%%

int yylex(YYSTYPE* value, X_DscrParse& parse) {
    value->expr = kNoExpr;
    return parse.TokenNext();
}

// A syntax error: the parse object reports "parse error" and records what
// was found and what the parser could have taken instead.
static int yyreport_syntax_error(const yypcontext_t* context, X_DscrParse& parse) {
    yysymbol_kind_t kinds[YYNTOKENS];
    const int count = yypcontext_expected_tokens(context, kinds, YYNTOKENS);
    std::vector<int> expected;
    for (int i = 0; i < count; ++i)
        expected.push_back(kinds[i] == YYSYMBOL_YYEOF ? int{TOKID_EOF} : kinds[i] - YYSYMBOL_TOKID_ERROR + TOKID_ERROR);
    parse.SyntaxError_Report(std::move(expected));
    return 0;
}

// Bison's other message: a stack that cannot grow is what bison calls
// exhausted memory.
void yyerror(X_DscrParse&, const char* message) {
    const bool stackFull = std::string_view(message) == "memory exhausted";
    ParseError_ReportFinal(nullptr, stackFull ? L"parser stack overflow\n" : L"parse error\n");
}
