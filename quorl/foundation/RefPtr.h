#pragma once

/// All that it takes to hold and to be held: `RefPtr<T>`, `WeakPtr<T>` and `ReferenceBase<T>`.

#include <quorl/foundation/Forward.h>
#include <quorl/foundation/ReferenceBase.h>
#include <quorl/foundation/StrongPtr.h>
#include <quorl/foundation/WeakPtrImpl.h>
