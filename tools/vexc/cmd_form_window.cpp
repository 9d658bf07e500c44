// vexc form show / describe: a form description read into a control tree.
#include "cli.h"

namespace vexc {

void RegisterFormWindowCommands(CLI::App& /*app*/, Action& /*action*/) {}

}  // namespace vexc
