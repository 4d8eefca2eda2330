#include "Saving.h"

#include <quorl/modules/ZelmSaver.h>
#include <quorl/objects/VObject.h>
#include <zelm/network/NetworkError.h>

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
    fs::path unfinished = file; // with the suffix, which savers may look at
    unfinished.replace_filename(".unfinished-" + fs::path(file).filename().string());
    std::error_code failure;
    const bool isSaved = saver->Save(unfinished.string());
    if (isSaved) fs::rename(unfinished, file, failure);
    if (isSaved && !failure)
        saver->lastFile = file;
    else
    {
        fs::remove(unfinished, failure);
        throw NetworkError(file + ": " + object.getName() + " cannot be saved here");
    }
}

} // namespace Zelm
