#include <quorl/modules/VLoader.h>

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

/// Any reference is resolved, and then taken by nobody. A size may be out of range.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string reference(reinterpret_cast<const char*>(data), size);
    Quorl::VLoader::LoadSuccess success;
    try
    {
        if (Quorl::VLoader::Load(success, reference, "")) std::abort();
        if (success.reason.empty()) std::abort();
    }
    catch (const std::out_of_range& error)
    {
        if (std::string(error.what()) != "stoll") std::abort();
    }
    return 0;
}
