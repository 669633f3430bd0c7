// What the parser errors mean to a catalogue author: for each message that
// the parser, the simplifier and the semantic actions report, a sentence in
// plain English that says what is wrong and how to fix it.
#pragma once

#include <string>

// The explanation of the parser error whose message format is `format`.
std::wstring ParseError_Explain(const wchar_t* format);
// The explanation of an error in a formula that lacks an operand.
std::wstring MissingOperand_Explain();
