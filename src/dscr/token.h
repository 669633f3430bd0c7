// The token record and token ids of the unit description language, their
// printable names, and the token ids of the keywords.
#pragma once

#include <string>
#include <string_view>

#include "etc/name_chars.h"

// Token ids; consecutive from 258, they are the parser's token numbers.
enum TE_TokenId : int {
    TOKID_ERROR = 258,
    TOKID_EOF,
    TOKID_EOL,
    TOKID_ARROWLEFT,
    TOKID_ARROWRIGHT,
    TOKID_ASSIGN,
    TOKID_BRALEFT,
    TOKID_BRARGHT,
    TOKID_COLON,
    TOKID_COMMA,
    TOKID_CONVARROW,
    TOKID_CURLBLEFT,
    TOKID_CURLBRGHT,
    TOKID_DIV,
    TOKID_FLOAT,
    TOKID_FLTEXP,
    TOKID_HEXNUM,
    TOKID_ID,
    TOKID_INT,
    TOKID_KW_CATEG,
    TOKID_KW_CONV,
    TOKID_KW_DFLTINTRN,
    TOKID_KW_DFLTSURFC,
    TOKID_KW_FORMAT,
    TOKID_KW_UNIT,
    TOKID_MINUS,
    TOKID_MULT,
    TOKID_PLUS,
    TOKID_SEMIC,
    TOKID_STRBRA,
    TOKID_STRQUOT,
};

// A scanned token: 1-based line, 0-based column, id and the characters it
// carries (empty for operators and punctuation).
struct X_Token {
    int line = -1;
    int column = -1;
    int id = TOKID_ERROR;
    std::wstring text;
};

// The TOKID_ name of an id from 258 to 288; "TE_TokenId <id> ??" otherwise.
std::wstring TokenIdName(int id);

// "line/column: name" with the column counted from 1, followed by " <text>"
// when the token carries text.
std::wstring TokenPrintForm(const X_Token& token);

// The token id of a keyword, or 0 when `text` is no keyword (case-sensitive).
inline int KeywordTokenId(std::wstring_view text) {
    const int index = DscrKeywordIndex(text);
    return index < 0 ? 0 : TOKID_KW_CATEG + index;
}
