// Text from anywhere, made fit for a terminal.
#ifndef DORVDLCTL_RENDERING_TEXT_H_
#define DORVDLCTL_RENDERING_TEXT_H_

#include <string>

namespace dorvdl::ctl {

// Makes UTF-8 the process's character encoding, which the functions below rely on.
void UseUtf8();

bool IsUtf8(const std::string& text);

// A copy in which whatever could steer a terminal or is no text stands escaped: \n, \t, \xHH for
// other ASCII control characters and bytes that are no UTF-8, \u{HEX} for everything else without a
// place of its own, the marks that turn the writing direction among them.
std::string Printable(const std::string& text);

// How many columns of a terminal a printable text takes.
int Width(const std::string& printable);

// A printable text of at most @p width columns: the text itself, or its beginning and an ellipsis.
std::string FitInto(const std::string& printable, int width);

// The words of a printable text in lines of at most @p width columns; only a word that is wider
// makes a wider line.
std::string Wrap(const std::string& printable, int width);

// The lines of a message as one line.
std::string JoinLines(const std::string& text);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_TEXT_H_
