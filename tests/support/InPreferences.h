#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/Environment.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/NativePath.h>

namespace brindle::tests {

/// A test with a preference directory of its own.
class InPreferences : public InTemporaryDirectory {
protected:
    /// The name, within the temporary directory, of a file in the preference directory.
    std::string Preference(std::string const& inName) const { return mDirectory + '/' + inName; }

    Environment const mSettings{{{"XDG_CONFIG_HOME", mTemporary.Native()}}};
    std::string const mDirectory =
        std::filesystem::path(filesupport::NativePath(filesupport::Dir::PrefDir()))
            .lexically_relative(mTemporary.Native());
};

} // namespace brindle::tests
