#include "debug/src/question/DialogQuestion.h"

#include <gtest/gtest.h>

namespace brindle::debug {

namespace {

std::vector<DialogButton> Buttons(std::vector<std::string> const& inLabels) {
    std::vector<DialogButton> buttons;
    for (auto const& label : inLabels) {
        buttons.push_back({static_cast<int>(buttons.size()) + 1, label});
    }
    return buttons;
}

TEST(DialogQuestion, NoPartOfARequestIsARequest) {
    DialogQuestion question;
    question.body = "12:,\n";
    question.buttons = Buttons({"a"});
    auto const request = WriteRequest(question);
    EXPECT_EQ(WriteRequest(ReadRequest(request).value()), request);
    for (std::size_t size = 0; size < request.size(); ++size) {
        EXPECT_FALSE(ReadRequest(request.substr(0, size))) << size;
    }
    for (char const* const wrong : {"16:brindle-dialog 2,", "-1:,", "99999999999:,", ":,", "x"}) {
        EXPECT_FALSE(ReadRequest(wrong)) << wrong;
    }
    EXPECT_FALSE(ReadRequest(request + "1:x,")) << "half a button";
}

TEST(DialogQuestion, EachButtonHasALetterOfItsOwn) {
    std::string letters;
    auto const buttons =
        Buttons({"Copy", "Debug", "Ignore Once", "Ignore Always", "Disable Asserts", "Kill Process",
                 "\u05D4\u05E2", "DI", "", "+"});
    for (auto const& [letter, place] : LettersOf(buttons)) {
        letters += letter + (place == std::string::npos ? "- " : std::to_string(place) + " ");
    }
    EXPECT_EQ(letters, "c0 d0 i0 a7 s2 k0 \u05D4"
                       "0 1- 2- 3- ");
}

TEST(DialogQuestion, WhatIsShownCommandsNoTerminal) {
    EXPECT_EQ(Printable("a\r\nb\rc\td"), "a\nb\nc\td");
    EXPECT_EQ(Printable("\x1B[2J\x7F\xC2\x9B|\xFF|\xED\xA0\x80|\xC3\xA9"),
              "\uFFFD[2J\uFFFD\uFFFD|\uFFFD|\uFFFD|\u00E9");
}

} // namespace

} // namespace brindle::debug
