#pragma once

#include <brindle/filesupport/File.h>

#include <vector>

namespace brindle::filesupport {

/// What the names of the temp files have in common: what stands before the counter and behind it.
struct TempNames {
    UTF16String base;
    UTF16String extension;
};

TempNames TempNamesFor(File const& inTarget);

/// True for a file that a save has created and not yet put in its place, as far as its name and its
/// marks tell.
bool IsOfSave(UTF16String const& inPath);

void RemoveSaves(std::vector<UTF16String>& ioPaths);

} // namespace brindle::filesupport
