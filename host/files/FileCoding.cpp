#include "host/files/FileCoding.h"

#include "host/files/FileErrors.h"

#include <optional>

namespace brindle::host {

void CodeFile(std::string const& inVerb, Arguments const& inArguments, Diagnostics& ioDiagnostics,
              Coding inCoding) {
    auto const& names = inArguments.Operands();
    if (names.size() != 2) {
        throw usage_error(inVerb + " needs IN and OUT");
    }
    std::string const& in = names[0];
    std::string const& out = names[1];
    try {
        std::optional<Input> input(std::in_place, in, &ioDiagnostics);
        Output output(out, in); // what is made of a private file is private
        inCoding(*input, output);
        input.reset(); // it may be the file that is replaced
        output.Commit();
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(in, error.what());
    } catch (unwritable_error const& error) {
        ioDiagnostics.Report(out, error.what());
    }
}

} // namespace brindle::host
