#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

#include <memory>

namespace Quorl
{

/// A collection of savers by name: the formats that something offers to be saved in.
class QUORL_API VSaveable
{
public:
    VSaveable();
    VSaveable(const VSaveable&) = delete;
    VSaveable& operator=(const VSaveable&) = delete;
    ~VSaveable();

private:
    struct Savers;

    const std::unique_ptr<Savers> savers_;
};

} // namespace Quorl
