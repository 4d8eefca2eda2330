#pragma once

#include <quorl/Forward.h>

namespace Quorl
{

/// Appends the reason why `module` is not valid to "ZelmError.log" in the working directory, names
/// the module on standard output, and asks what is to be done (`VModules::setErrorDialog`), unless
/// an earlier answer was not to be asked again.
///
/// Ends the process if that is the answer.
void reportLoadFailure(const VModule& module);

} // namespace Quorl
