// SPDX-License-Identifier: MIT
// The command line's grammar: which commands there are, what each may be given, and what --help
// says of them. The argument library is seen by this file's implementation alone.
#pragma once

namespace quillmere::cli {

// Runs the command that the arguments name and returns the exit status. A mistake in them is
// answered on standard error, --help on standard output; nothing is run then.
int RunCommandLine(int argc, const char* const* argv);

}  // namespace quillmere::cli
