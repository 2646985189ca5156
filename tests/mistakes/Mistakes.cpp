// Programs that must not compile, one for each value of MISTAKE. The comment behind the value is a
// part of the message that the compiler has to print, within five lines. Without a MISTAKE, the
// right forms compile. tests/mistakes/check compiles them all.

#include <brindle/config/ReplacementValue.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/threads/TaskGroup.h>
#include <brindle/time/TickTime.h>
#include <brindle/utility/TextTypes.h>

#include <iostream>
#include <map>

using namespace brindle;

void Mistake(UTF16String const& inText, UTF8String const& inBytes, proplist::PropList& ioList,
             filesupport::OByteStream& outStream, threads::TaskGroup& ioGroup) {
#if MISTAKE == 1 // convert other text by utility::Utf16
    bool const isEqual = inText == "text";
#elif MISTAKE == 2  // convert other text by utility::Utf16
    UTF16String const joined = inText + inBytes;
#elif MISTAKE == 3  // convert other text by utility::Utf8
    bool const isEqual = u"text" != inBytes;
#elif MISTAKE == 4  // brindle/filesupport/WireForm.h
    outStream << inBytes;
#elif MISTAKE == 5  // the value has no wire form
    outStream << std::map<int, int>();
#elif MISTAKE == 6  // a pointer has no wire form
    outStream << "text";
#elif MISTAKE == 7  // use FileFromNative of brindle/filesupport/NativePath.h
    filesupport::File const file("/tmp/a.txt");
#elif MISTAKE == 8  // a pointer is no value
    ioList.SetValue("name"_utf8, "text");
#elif MISTAKE == 9  // a function of a group takes no argument
    ioGroup.Run([](int) {});
#elif MISTAKE == 10 // PropList
    proplist::PropList const copy = ioList;
#elif MISTAKE == 11 // Set takes every usual type
    ioList.SetValue("name", "text");
#elif MISTAKE == 12 // a character is no value
    char letter = ioList.Get<char>("letter");
#elif MISTAKE == 13 // A ReplacementValue is a number, a bool, a text
    config::ReplacementValue const value(ioList);
#elif MISTAKE == 14 // Get takes every usual type
    std::string text;
    ioList.GetValue("name", text);
#else
    bool const isEqual = inText == u"text" && "text" != inBytes;
    UTF16String const joined = u"a" + inText + u"b";
    outStream << isEqual << joined;
    std::cout << inText << inBytes;
    ioGroup.Run([] {});
    ioList.SetValue("volume", 1);
    ioList.Set("name", inBytes + "text");
    config::ReplacementValue const value("text");
    time::TickTime const twice = 2 * time::TickTime(1);
#endif
}
