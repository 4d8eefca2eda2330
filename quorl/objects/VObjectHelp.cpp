#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>

namespace Quorl
{
namespace
{

string addressOf(const VObject& object)
{
    if (!object.Creator) return VObject::HelpServer;
    return VObject::HelpServer + "/api/search.php?query=" + object.BaseName();
}

string originOf(const VObject& object)
{
    if (!object.Creator) return {};
    return "This Zelm object was created via <I>" + object.Creator->getName() +
           "</I>, which has been loaded from <TT>" + object.Creator->getLoadModule() + "</TT><P>";
}

string richNameOf(const VObject& object)
{
    const string tail =
        object.Creator ? ", created from <I>" + object.Creator->getName() + "</I>." : string(".");
    return "This is a Zelm object, named <I>" + object.BaseName() + "</I>" + tail;
}

} // namespace

string VObject::HelpServer = "https://help.invalid";

string VObject::help(HelpType type) const
{
    switch (type)
    {
        case HelpURL: return addressOf(*this);
        case HelpOrigin: return originOf(*this);
        case HelpRichName: return richNameOf(*this);
        case HelpPlain: break;
    }
    return "This is a Zelm object, named " + BaseName();
}

} // namespace Quorl
