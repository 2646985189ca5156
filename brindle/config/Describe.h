#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <exception>
#include <string>

namespace brindle::config {

/// A sentence or two about an exception, for a user: what failed and, where the system refused,
/// why, as in "Could not write '/home/me/a.xml'. The disk is full."
///
///     } catch (std::exception const& error) {
///         std::cerr << config::DescribeInUTF8(error) << '\n';
///     }
///
/// The texts are those of the host's localiser, or English if none is installed. What files,
/// directories and byte streams throw is described by what it knows as a `FileFailure`. Any other
/// exception is described by its `what()`, which may be a localisation key. Throws only what the
/// localiser and the allocator throw. Any thread may call.
[[nodiscard]] BRN_API UTF16String Describe(std::exception const& inException);

/// The same in UTF-8, for standard streams. Control characters, which the name of a file may
/// contain, and bytes that are not text become U+FFFD.
[[nodiscard]] BRN_API std::string DescribeInUTF8(std::exception const& inException);

} // namespace brindle::config
