#include "GridFile.h"

#include <quorl/kit/Module.h>
#include <quorl/kit/Network.h>
#include <quorl/modules/VLoader.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>

#include <exception>

/// Files of grids, for `VLoader::Load`.
namespace Maps
{
namespace
{

using Quorl::RefPtr;
using Quorl::VCreatorBase;
using Quorl::VManagedObject;
using Quorl::VObject;

/// Makes readers of one file, by the creator of readers, which may have to be loaded.
class GridFileCreator final : public VCreatorBase
{
public:
    explicit GridFileCreator(const std::string& file)
        : VCreatorBase("Grid files/" + file, 0, {}, false, nullptr), file_(file)
    {
    }

    RefPtr<VObject> create(const std::string& wantedName, const Tolmen::Intercube& context) override
    {
        const RefPtr<VCreatorBase> maker = Quorl::findCreator("Grid/Reader");
        if (!maker) return {};
        RefPtr<VObject> reader = maker->create(wantedName, context);
        if (reader) Quorl::setText(*reader, "file", file_);
        return reader;
    }

    Quorl::VAcceptInfoList accept(const RefPtr<VObject>& /*parent*/) override { return {}; }

private:
    const std::string file_;
};

/// Takes files that end as grids do. What is wrong with one is found out here, not in the network.
class GridLoader final : public Quorl::VLoader
{
public:
    GridLoader() : VLoader("grid files", 0) { self.ref(); } // static: no handle may delete it

    LoadSuccess check(const std::string& file) override
    {
        if (isGridFile(file)) return {};
        return {getName(), file, "it does not end in .gtx or .asc"};
    }

    RefPtr<VManagedObject> load(LoadSuccess& success, const std::string& file,
                                const std::string& /*name*/) override
    try
    {
        readGrid(file);
        const RefPtr<GridFileCreator> creator(new GridFileCreator(file));
        if (const auto module = Quorl::VModules::find(getLoadModule()))
            creator->addInterface(new Quorl::VModuleHold(module));
        return creator;
    }
    catch (const std::exception& error)
    {
        success.reason = error.what();
        return {};
    }
};

GridLoader loader;

} // namespace
} // namespace Maps

ZELM_MODULE(formats)
{
    initialization.title = "Files of grids";
    initialization.author = "The Quorl authors";
    return true;
}
