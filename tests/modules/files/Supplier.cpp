#include <quorl/kit/Module.h>
#include <quorl/registry/VInputCreator.h>

#include <complex>

/// Provides a type of values.
namespace
{

class Supplier final : public Quorl::VInputCreator<std::complex<float>, Quorl::VInputCreatorBase>
{
public:
    Supplier() : VInputCreator("Supplier/Complex", 0, {}, ZELM_MODULE_DIRECTORY)
    {
        self.ref(); // static: no handle may delete it
    }
};

Supplier supplier;

} // namespace

ZELM_MODULE(supplier)
{
    return true;
}
