#pragma once

#include <string>
#include <vector>

namespace Board {

// The board's first process speaks through the kernel's log, which goes to the console line by
// line and in the order of what happened. What is its own begins with the first of these; the
// character behind it tells what it is.
constexpr char kFromInit[] = "init: ";
constexpr char kEvent = 'e';        // a datagram of /dev/log, or its end
constexpr char kPiece = 'p';        // a piece of a datagram; more follows
constexpr char kOutput = 'o';       // a piece of the running command's output
constexpr char kEnd = 'd';          // the command's status, as from waitpid
constexpr size_t kPieceSize = 300;  // far below what a line of the kernel's log holds

// A line to the console is a command to run: its words, a tab between two of them.
constexpr char kBetweenWords = '\t';

// The text with all that a line could not hold, and backslashes, written as two characters; and
// back.
std::string Escape(const std::string& text);
std::string Unescape(const std::string& text);

// Splits a text at every separator; a text without any is one piece.
std::vector<std::string> Split(const std::string& text, char separator);

// Takes the first complete line, without its end, out of the text that has come so far. False when
// there is none.
bool TakeLine(std::string* text, std::string* line);

}  // namespace Board
