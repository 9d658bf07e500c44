// vexc form totext / tobinary / check: component streams and their description text.
#include "cli.h"

namespace vexc {

void RegisterFormCommands(CLI::App& /*app*/, Action& /*action*/) {}

}  // namespace vexc
