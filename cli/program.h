/// kestrel-cli: every operation without windows, for scripts and servers.
#pragma once

namespace kestrel {

/// Does what the arguments of `main` ask for and returns the exit status: 0 done, 1 failure, 2
/// usage. Never throws.
int runCommandLine(int argc, char** argv);

}  // namespace kestrel
