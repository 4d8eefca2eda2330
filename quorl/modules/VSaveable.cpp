#include <quorl/modules/VSaveable.h>

#include <quorl/foundation/AtCleanUp.h>
#include <quorl/modules/ZelmSaver.h>

#include <algorithm>

namespace Quorl
{

VSaveable::SaveIterator::~SaveIterator() = default;

VSaveable::VSaveable() = default;
VSaveable::~VSaveable() = default;

void VSaveable::addSaver(const string& name, const RefPtr<ZelmSaver>& saver)
{
    savers_[name] = saver;
}

RefPtr<ZelmSaver> VSaveable::getSaver(const string& name) const
{
    const auto entry = savers_.find(name);
    return entry == savers_.end() ? RefPtr<ZelmSaver>() : entry->second;
}

RefPtr<ZelmSaver> VSaveable::getSaverByExt(const string& extension) const
{
    for (const auto& [name, saver] : savers_)
        if (saver && saver->extension == extension) return saver;
    return {};
}

RefPtr<ZelmSaver> VSaveable::getMostRecentSaver() const
{
    RefPtr<ZelmSaver> result;
    Ageable bound = Ageable::Ooooold;
    for (const auto& [name, saver] : savers_)
    {
        if (!saver || saver->lastFile.empty() || *saver < bound) continue;
        result = saver;
        bound = std::max<Ageable>(bound, *saver);
    }
    return result;
}

int VSaveable::iterateSavers(SaveIterator& visitor)
{
    int count = 0;
    for (const auto& [name, entry] : savers_)
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
    static const Tolmen::AtCleanUp end([] { Tolmen::emptySteadily(state.savers_); });
    return state;
}

} // namespace Quorl
