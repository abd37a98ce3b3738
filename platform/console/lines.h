#pragma once

#include <cstddef>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A field as a line carries it: backslash, TAB, CR, LF and NUL are written `\\`, `\t`, `\r`, `\n`, `\0`.
std::string escapeField(std::string_view text);
/// The text that a field carries. A backslash before any other character stands for itself.
std::string unescapeField(std::string_view field);

/// The fields of an input line, unescaped: split at TABs if it holds one, else at blanks, where the last of
/// `atMost` fields takes the rest of the line.
std::vector<std::string> splitFields(std::string_view line, std::size_t atMost);

/// The first field of a line, which says what the line does.
std::string_view firstField(std::string_view line);

/// Prints lines in UTF-8 (a field that is no UTF-8 is read as Windows-1252); each goes out at once.
class LinePrinter {
public:
    explicit LinePrinter(std::ostream& out) : out_(out) {}

    void print(std::initializer_list<std::string_view> fields);
    void print(const std::vector<std::string>& fields);

    /// Nothing more is printed.
    void mute() { muted_ = true; }

private:
    template <class Fields>
    void printAll(const Fields& fields);

    std::ostream& out_;
    bool muted_ = false;
};

}  // namespace velmora
