// vexc message: a message box composed from a language file.
#include "cli.h"

namespace vexc {

void RegisterMessageCommands(CLI::App& /*app*/, Action& /*action*/) {}

}  // namespace vexc
