// vexc checktree: the check tree viewer over a tab-indented file.
#include "cli.h"

namespace vexc {

void RegisterCheckTreeCommands(CLI::App& /*app*/, Action& /*action*/) {}

}  // namespace vexc
