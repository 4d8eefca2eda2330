#include "Saving.h"

#include <quorl/modules/ZelmSaver.h>
#include <quorl/objects/VObject.h>
#include <zelm/network/NetworkError.h>
#include <zelm/network/Replacement.h>

#include <filesystem>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;
using Quorl::RefPtr;
using Quorl::ZelmSaver;

struct Suffixes final : Quorl::VSaveable::SaveIterator
{
    bool apply(const std::string& /*name*/, const RefPtr<ZelmSaver>& saver) override
    {
        text += (text.empty() ? "; it can be saved as " : ", ") + saver->extension;
        return true;
    }

    std::string text;
};

RefPtr<ZelmSaver> saverFor(Quorl::VObject& object, const std::string& file)
{
    const std::string suffix = fs::path(file).extension().string();
    RefPtr<ZelmSaver> saver = object.getSaverByExt(suffix);
    if (!saver && !suffix.empty()) saver = object.getSaverByExt(suffix.substr(1));
    if (saver) return saver;
    Suffixes known;
    object.iterateSavers(known);
    throw NetworkError(object.getName() + " cannot be saved as " + file +
                       (known.text.empty() ? "; it has no savers" : known.text));
}

} // namespace

void saveObject(Quorl::VObject& object, const std::string& file)
{
    const RefPtr<ZelmSaver> saver = saverFor(object, file);
    Replacement replacement(file);
    if (!saver->Save(replacement.path()))
        throw NetworkError(file + ": " + object.getName() + " cannot be saved here");
    replacement.takePlace();
    saver->lastFile = file;
}

} // namespace Zelm
