#include "Network.h"

#include "GeoidError.h"

#include <quorl/kit/Network.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueTrait.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>
#include <functional>

namespace Geoid
{
namespace
{

using Quorl::RefPtr;
using Quorl::VCreatorBase;
using Quorl::VManagedObject;
using Quorl::VObject;
using Quorl::VSlotContainer;

std::string text(double number)
{
    return Quorl::VValueTrait<double>::Text(number);
}

} // namespace

Network::Network(const Modules& modules, const std::filesystem::path& gridFile)
{
    make(modules, "reader", "Grid/Reader");
    make(modules, "region", "Grid/Region");
    make(modules, "smoothing", "Grid/Smoothing");
    make(modules, "hillshade", "Grid/Hillshade");
    make(modules, "colours", "Picture/Colours");
    make(modules, "contours", "Grid/Contours");
    make(modules, "picture", "Picture/Writer");

    connect("reader", "region");
    connect("region", "smoothing");
    for (const char* const drawing : {"hillshade", "colours", "contours"})
    {
        connect("smoothing", drawing);
        connect(drawing, "picture");
    }
    share("smoothing", "picture", "sigma"); // the picture tells how it was smoothed

    setEverywhere("reader", "file", gridFile.string());
}

Network::~Network()
{
    for (const RefPtr<VObject>& step : steps_) step->remove();
}

void Network::make(const Modules& modules, const std::string& name, const std::string& creator)
{
    const RefPtr<VCreatorBase> found = modules.creator(creator);
    if (!found) throw GeoidError("there is no creator " + creator);
    steps_.push_back(found->create(name, Tolmen::Intercube()));
    steps_.back()->insertUpdateFunction(&Journal::noteRun);
}

/// In all ways in which the creator of the child accepts the parent.
void Network::connect(const std::string& parent, const std::string& child)
{
    const std::string way = Quorl::connectInAllWays(find(parent), find(child));
    if (!way.empty()) throw GeoidError(child + " does not take " + way + " of " + parent);
}

/// Lets an object use the parameter of another.
void Network::share(const std::string& from, const std::string& to, const std::string& parameter)
{
    const auto code = find(to)->attach(parameter, *find(from), parameter);
    if (code != VSlotContainer::AttachOk)
        throw GeoidError(from + "." + parameter + " to " + to + ": " +
                         VSlotContainer::AttachErrorCodeMessage(code));
}

void Network::addContext(const View& view)
{
    const RefPtr<Quorl::ValuePool> pool(new Quorl::ValuePool(view.name));
    pools_.push_back(pool);
    set(pool, "region", "west", text(view.west));
    set(pool, "region", "east", text(view.east));
    set(pool, "region", "south", text(view.south));
    set(pool, "region", "north", text(view.north));
    set(pool, "region", "width", std::to_string(view.width));
    set(pool, "region", "height", std::to_string(view.height));
    set(pool, "hillshade", "azimuth", text(view.azimuth));
    set(pool, "hillshade", "altitude", text(view.altitude));
    set(pool, "hillshade", "exaggeration", text(view.exaggeration));
    set(pool, "colours", "low", text(view.low));
    set(pool, "colours", "high", text(view.high));
    set(pool, "contours", "interval", text(view.interval));
    set(pool, "picture", "title", view.title);
    set(pool, "picture", "file", view.picture.string());
}

std::vector<Run> Network::request(const std::string& context)
{
    const RefPtr<Quorl::ValuePool> pool = Quorl::ValuePool::getValuePool(context);
    if (!pool) throw GeoidError("there is no context " + context);
    Quorl::VRequest request(pool, false);
    request.addInterface(journal_);
    find("picture")->init_request(request, 1.0);

    std::vector<Run> runs;
    for (const RefPtr<VObject>& object : journal_->take())
        runs.push_back({object->getName(), object->age(pool).stamp()});
    return runs;
}

void Network::setIn(const std::string& context, const std::string& object,
                    const std::string& parameter, const std::string& newText)
{
    const RefPtr<Quorl::ValuePool> pool = Quorl::ValuePool::getValuePool(context);
    if (!pool) throw GeoidError("there is no context " + context);
    set(pool, object, parameter, newText);
}

void Network::setEverywhere(const std::string& object, const std::string& parameter,
                            const std::string& newText)
{
    set({}, object, parameter, newText);
}

void Network::set(const RefPtr<Quorl::ValuePool>& pool, const std::string& object,
                  const std::string& parameter, const std::string& newText)
{
    const RefPtr<Quorl::VParameter> found = find(object)->getParameter(parameter);
    if (!found) throw GeoidError(object + " has no parameter " + parameter);
    if (!Quorl::setText(*find(object), parameter, newText, pool))
        throw GeoidError(found->Name() + " cannot be \"" + newText + "\"");
}

std::vector<std::string> Network::sourcesOf(const std::string& object) const
{
    std::vector<std::string> sources;
    const std::function<bool(Quorl::VSlot&, int)> note = [&](Quorl::VSlot& slot, int) {
        const RefPtr<Quorl::VManagedObject> source = slot.getSource();
        if (source && std::ranges::find(sources, source->getName()) == sources.end())
            sources.push_back(source->getName());
        return true;
    };
    find(object)->iterate_inputs(note);
    return sources;
}

std::vector<std::string> Network::objects() const
{
    std::vector<std::string> names;
    names.reserve(steps_.size());
    for (const RefPtr<VObject>& step : steps_) names.push_back(step->getName());
    return names;
}

const RefPtr<VObject>& Network::find(const std::string& object) const
{
    const auto step = std::ranges::find(steps_, object, [](const auto& s) { return s->getName(); });
    if (step == steps_.end()) throw GeoidError("there is no object " + object);
    return *step;
}

} // namespace Geoid
