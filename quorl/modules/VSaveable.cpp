#include <quorl/modules/VSaveable.h>

#include <quorl/foundation/AtCleanUp.h>
#include <quorl/foundation/FindOrNull.h>
#include <quorl/modules/ZelmSaver.h>

#include <algorithm>

namespace Quorl
{

VSaveable::SaveIterator::~SaveIterator() = default;

VSaveable::VSaveable() = default;
VSaveable::~VSaveable() = default;

void VSaveable::addSaver(const string& name, const RefPtr<ZelmSaver>& saver)
{
    if (!savers_) savers_ = std::make_shared<Savers>();
    (*savers_)[name] = saver;
}

const VSaveable::Savers& VSaveable::savers() const
{
    static const auto& none = *new Savers; // asked until the very end
    return savers_ ? *savers_ : none;
}

RefPtr<ZelmSaver> VSaveable::getSaver(const string& name) const
{
    return Tolmen::findOrNull(savers(), name);
}

RefPtr<ZelmSaver> VSaveable::getSaverByExt(const string& extension) const
{
    for (const auto& [name, saver] : savers())
        if (saver && saver->extension == extension) return saver;
    return {};
}

RefPtr<ZelmSaver> VSaveable::getMostRecentSaver() const
{
    RefPtr<ZelmSaver> result;
    Ageable bound = Ageable::Ooooold;
    for (const auto& [name, saver] : savers())
    {
        if (!saver || saver->lastFile.empty() || *saver < bound) continue;
        result = saver;
        bound = std::max<Ageable>(bound, *saver);
    }
    return result;
}

int VSaveable::iterateSavers(SaveIterator& visitor)
{
    if (!savers_) return 0;
    const std::shared_ptr<const Savers> held = savers_; // the visitor may end this collection
    int count = 0;
    for (const auto& [name, entry] : *held) // nothing is ever taken out
    {
        const RefPtr<ZelmSaver> saver = entry; // kept over its replacement
        if (!saver) continue;
        ++count;
        if (!visitor.apply(name, saver)) break;
    }
    return count;
}

bool VSaveable::autosave() const
{
    const RefPtr<ZelmSaver> saver = getMostRecentSaver();
    return saver && saver->Save(saver->lastFile);
}

VSaveable& VSaveable::GlobalState()
{
    static auto& state = *new VSaveable;
    static const Tolmen::AtCleanUp end([] {
        if (state.savers_) Tolmen::emptySteadily(*state.savers_);
    });
    return state;
}

} // namespace Quorl
