#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <string>

/// Names and paths of any bytes as readable text, for documents and manifests:
///
///     list.SetValue("root"_utf8, utility::PercentEncoded(filesupport::NativePath(dir)));
///
/// Any thread may call, and only the allocator can throw.
namespace brindle::utility {

/// The name as text that an XML document can hold: each byte of control characters, of invalid
/// UTF-8, of U+FFFE and U+FFFF, and "%" itself becomes "%" and two capital hexadecimal digits.
[[nodiscard]] BRN_API UTF8String PercentEncoded(std::string const& inName);

/// Decodes a name. Returns false, and leaves `outName` unspecified, for a text that
/// `PercentEncoded` never produces.
[[nodiscard]] BRN_API bool PercentDecode(UTF8String const& inText, std::string& outName);

} // namespace brindle::utility
