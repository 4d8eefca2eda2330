#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <cstdint>

namespace Quorl
{

/// The depth of an object in the evaluation that passed last. Deliberate: to copy and to assign
/// does not give the same depth but the next one, since it is handed down from object to object.
class QUORL_API RequestExecutor
{
public:
    /// What all executors of one chain share.
    class QUORL_API MaxRequestExecutor : public Tolmen::ReferenceBase<MaxRequestExecutor>
    {
    public:
        MaxRequestExecutor();
        ~MaxRequestExecutor() override;

        std::int32_t MaxLevel = 0; ///< the largest depth
        std::int32_t Changes = 0;  ///< how often an object's depth became another
    };

    RequestExecutor();
    RequestExecutor(const RequestExecutor& caller);
    RequestExecutor& operator=(const RequestExecutor& caller);
    ~RequestExecutor();

    void reset(); ///< to depth 0, in a chain of its own

    std::int32_t Level = 0;
    std::int32_t PreviousLevel = -1;
    RefPtr<MaxRequestExecutor> Max;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen
