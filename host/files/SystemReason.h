#pragma once

#include <brindle/config/FileFailure.h>
#include <brindle/utility/SystemError.h>

#include <string>

namespace brindle::host {

/// The system's reason in the words of a diagnostic, such as "permission denied"; "cannot be used"
/// if the system gave none.
std::string ReasonText(utility::SystemError inError);

/// The reason of any exception of files, directories and byte streams.
inline std::string ReasonText(config::FileFailure const& inFailure) {
    return ReasonText(inFailure.Cause());
}

} // namespace brindle::host
