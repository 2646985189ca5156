#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::debug {

struct DialogButton {
    int id = 0; ///< what the dialog answers when it is pressed
    std::string label;
    bool isDefault = false; ///< drawn as a default button
    bool isForCopy = false; ///< copies the texts and leaves the dialog open
};

/// Everything that a dialog shows, in UTF-8, in the language of the host.
struct DialogQuestion {
    int width = 0; ///< in dialog units: quarters of a character's width, eighths of its height
    int height = 0;
    std::string title;
    std::string heading;
    std::string body;
    std::vector<DialogButton> buttons; ///< in the order of the tabulator; the first has the focus
    int closingButton = 0;             ///< the id that Escape and closing the window answer
};

/// Converts between a question and the bytes that the library sends to the program that shows it.
/// `ReadRequest` returns nothing for bytes that are no request of this version.
std::string WriteRequest(DialogQuestion const& inQuestion);
std::optional<DialogQuestion> ReadRequest(std::string_view inRequest);

/// The program answers with one line: the id of a button in decimal, or this text if it cannot
/// connect to a display.
inline constexpr char const* kNoDisplay = "no display";

/// The key that stands for a button.
struct ButtonLetter {
    std::string letter; ///< UTF-8, in lower case if it is ASCII; empty if none is left
    std::size_t place = std::string::npos; ///< in the label, in bytes; `npos` for a digit
};

/// Chooses a different letter for each button, from the first to the last: the first letter of a
/// word of its label that is still free, else any letter of the label, else a digit.
std::vector<ButtonLetter> LettersOf(std::vector<DialogButton> const& inButtons);

/// Text that is safe to show, wherever it comes from: line feeds as line ends, and U+FFFD for
/// control characters other than tabulators and for bytes that are not UTF-8.
std::string Printable(std::string_view inText);

} // namespace brindle::debug
