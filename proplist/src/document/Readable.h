#pragma once

#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>

/// Whether a reader gives back what a document was written from.
namespace brindle::proplist::impl {

/// True if the document is UTF-8 of characters that XML allows. A carriage return counts as none,
/// for a reader makes a line feed of it.
bool IsReadable(UTF8String const& inDocument) noexcept;

/// True if a text of the list, or of a list in it, goes into the document shortened: conversion
/// ends at a NUL, which the document then does not show.
bool HoldsCutText(PropList const& inList);

} // namespace brindle::proplist::impl
