#include <quorl/modules/VLoader.h>

#include <quorl/foundation/Intercube.h>
#include <quorl/modules/RemoteReference.h>
#include <quorl/modules/VLoaderInfo.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/services/VActionNotifier.h>

namespace Quorl
{

template class VManagedDomainObject<VLoader>;

namespace
{

/// Offers a file to each loader until one takes it. From then on that one decides alone.
class LoaderIterator final : public VManagedObjectIterator
{
public:
    LoaderIterator(const string& file, const string& name, const string& url)
        : file_(file), name_(name), url_(url)
    {
    }

    bool apply(int /*priority*/, const RefPtr<VManagedObject>& item,
               const string& /*name*/) override
    {
        const RefPtr<VLoader> offered = item;
        if (!offered) return true;
        VLoader::LoadSuccess own = offered->check(file_);
        if (!own.reason.empty()) return true;
        loader = offered;
        const RefPtr<VManagedObject> loaded = offered->load(own, file_, name_);
        if (!own.reason.empty())
            success = {offered->getName(), file_, own.reason};
        else if (loaded)
            makeObject(loaded);
        return false;
    }

    RefPtr<VLoader> loader; // the one that took the file
    RefPtr<VObject> object;
    VLoader::LoadSuccess success;

private:
    void makeObject(const RefPtr<VManagedObject>& loaded)
    {
        loaded->addInterface(new VLoaderInfo(url_, loader));
        remember();
        Tolmen::Intercube info;
        info.addInterface(new VLoaderInfo(url_, loader));
        const RefPtr<VCreatorBase> creator = loaded;
        if (!creator) return;
        object = creator->create(name_.empty() ? creator->getName() : name_, info);
        if (object) VActionNotifier::VObjectCreation(object, info, creator);
    }

    void remember()
    {
        loader->recent.push_front(url_);
        while (loader->recent.size() > VLoader::kMostRecent) loader->recent.pop_back();
    }

    const string file_; // copies: what was given may be of a loader's record, or of a report
    const string name_;
    const string url_;
};

} // namespace

VLoader::VLoader() = default;

VLoader::VLoader(const string& wantedName, int givenPriority)
    : VManagedDomainObject<VLoader>(wantedName, givenPriority)
{
    insert(wantedName, givenPriority);
}

VLoader::~VLoader() = default;

RefPtr<VObject> VLoader::Load(LoadSuccess& success, const string& given, const string& name)
{
    const string url = given; // it may be of the last report
    if (url.empty())
    {
        success.reason = "No file name or URL given.";
        return {};
    }
    const string file = localFileOf(url);
    LoaderIterator search(file, name, url);
    VManagedObject::traverse(typeid(VLoader), search);
    success = search.success;
    if (!search.loader)
    {
        success.reason = "Unsupported file extension or format.";
        success.file = url;
    }
    if (!success.reason.empty()) VActionNotifier::StatusInfo("Could not load " + url + " !");
    return search.object;
}

RefPtr<VObject> VLoader::LoadWithWarning(const string& origin, const string& url,
                                         const string& name)
{
    LoadSuccess success;
    RefPtr<VObject> object = Load(success, url, name);
    if (!success.reason.empty())
        VActionNotifier::Warning(
            VActionNotifier::WarnInfo{origin, "Cannot load file " + url, success.reason, 0});
    return object;
}

} // namespace Quorl
