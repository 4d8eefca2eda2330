#include <quorl/modules/ZelmSaver.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ZelmSaver>;
} // namespace Tolmen

namespace Quorl
{

ZelmSaver::ZelmSaver(const string& suffix) : extension(suffix) {}
ZelmSaver::~ZelmSaver() = default;

bool ZelmSaver::Save(const string& file)
{
    const RefPtr<ZelmSaver> held = Tolmen::heldIfOwned(WeakPtr<ZelmSaver>(this));
    string written = file; // `file` may be `lastFile`, and the format may change that
    if (!saveAndTouch(written)) return false;
    lastFile.swap(written);
    return true;
}

bool ZelmSaver::autosave()
{
    const RefPtr<ZelmSaver> held = Tolmen::heldIfOwned(WeakPtr<ZelmSaver>(this));
    const string written = lastFile; // as above
    return !written.empty() && saveAndTouch(written);
}

bool ZelmSaver::saveAndTouch(const string& file)
{
    if (!save(file)) return false;
    touch();
    return true;
}

} // namespace Quorl
