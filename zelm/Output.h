#pragma once

#include <zelm/network/Json.h>

#include <cstdio>
#include <string>

/// What the program prints. The kernel's diagnostics go to standard output by interface, and so
/// does what modules print; they are moved to standard error, so that what is printed here is
/// clean.
namespace Zelm::Output
{

/// Opens the standard streams that whoever started the program has closed, lest a file that is
/// opened later be taken for one. What is said goes nowhere then. To be called first of all.
void openClosedStreams();

/// From now on descriptor 1 is standard error. To be called before anything is printed.
/// \throws std::runtime_error if nothing can be printed.
void moveDiagnosticsAside();

/// Whether a stream is shown by a terminal that knows more than lines of text.
bool isTerminal(std::FILE* stream);

/// Prints on what was standard output.
void print(const std::string& text);
void printLine(const std::string& text);
void printJson(const Json& json, bool inOneLine = false);

/// Texts that stand out on a terminal, unless NO_COLOR is set in the environment or the terminal is
/// "dumb"; elsewhere they stay as they are.
std::string strong(const std::string& text);
std::string alarming(const std::string& text);

/// One line on standard error: "zelm: " and the words.
void complain(const std::string& words);

/// \throws std::runtime_error if something could not be printed.
void finish();

/// Texts of equal width, filled up with blanks.
std::string padded(const std::string& text, std::size_t width);

} // namespace Zelm::Output
