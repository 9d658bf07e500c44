// vexc table dump / load and vexc settings get / set over SQLite tables.
#include "cli.h"

namespace vexc {

void RegisterTableCommands(CLI::App& /*app*/, Action& /*action*/) {}

}  // namespace vexc
