// The diagnostics log and the debug trace. A reporting site records where in
// the library it stands (ErrorPos_Set) and then writes its message
// (Error_Write); the log sink receives one entry per message. Trace text goes
// to the trace sink, if a host installed one.
#pragma once

#include <cstdint>
#include <string>

#include "etc/format.h"

// Reporting source names, one per part of the library.
inline constexpr const char* kSrcUnitsStd = ".\\QT_Units_Std.cpp";
inline constexpr const char* kSrcUnitsDscr = ".\\QT_Units_Dscr.cpp";
inline constexpr const char* kSrcParsOps = ".\\Dscr_ParsOps.cpp";
inline constexpr const char* kSrcScan = ".\\Dscr_Scan.cpp";
inline constexpr const char* kSrcEtc = ".\\Etc.cpp";

// Records the reporting source file and line for the next Error_Write of this
// thread. A name that converts to no character leaves the position as it was.
void ErrorPos_Set(const char* file, int32_t line);

// Writes an already formatted message to the log with the recorded position.
void Error_WriteMessage(const std::wstring& message);

template <class... Args>
void Error_Write(const wchar_t* format, const Args&... args) {
    Error_WriteMessage(QtrFormat(format, args...));
}

// ErrorPos_Set followed by Error_Write: the one way the library reports.
template <class... Args>
void Error_Report(const char* file, int32_t line, const wchar_t* format, const Args&... args) {
    ErrorPos_Set(file, line);
    Error_Write(format, args...);
}

// Whether a trace sink is installed; trace text is only formatted when it is.
bool Trace_IsActive();
void Trace_WriteText(const std::wstring& text);
int32_t Trace_NextNumber();

template <class... Args>
void Trace_Write(const wchar_t* format, const Args&... args) {
    if (Trace_IsActive()) Trace_WriteText(QtrFormat(format, args...));
}

// Like Trace_Write, prefixed with a running number right-aligned in four columns.
template <class... Args>
void Trace_WriteNumbered(const wchar_t* format, const Args&... args) {
    const int32_t number = Trace_NextNumber();
    if (Trace_IsActive()) Trace_WriteText(QtrFormat(L"%4d: ", number) + QtrFormat(format, args...));
}

// Writes numbered trace lines that show how values beside a rounding
// boundary are formatted by the two formatting paths.
void ErrorTest_Format();

// Reads a hexadecimal number, skipping a leading "0x"/"0X"; keeps the low 32
// bits. `length` counts every character consumed, the prefix included.
void HexNumber_Scan(const wchar_t* text, uint32_t& value, int& length);

// Removes blanks, tabs, line feeds and carriage returns from both ends.
void String_Trim(std::wstring& text);
