#include "network/Network.h"

#include <quorl/values/ValuePool.h>

#include <algorithm>
#include <functional>

namespace Geoid
{
namespace
{

using Quorl::RefPtr;
using Quorl::VSlotContainer;

std::string text(double number)
{
    return Quorl::VValueTrait<double>::Text(number);
}

} // namespace

Network::Network(const std::filesystem::path& gridFile)
    : steps_{new GridReader(journal_),   new RegionSampler(journal_), new Smoother(journal_),
             new Hillshader(journal_),   new Colourer(journal_),      new ContourTracer(journal_),
             new PictureWriter(journal_)}
{
    connect("reader", "grid", "region", "grid");
    connect("region", "heights", "smoothing", "heights");
    connect("smoothing", "smoothed", "hillshade", "heights");
    connect("smoothing", "smoothed", "colours", "heights");
    connect("smoothing", "smoothed", "contours", "heights");
    connect("colours", "colours", "picture", "colours");
    connect("colours", "map", "picture", "map");
    connect("hillshade", "shade", "picture", "shade");
    connect("hillshade", "light", "picture", "light");
    connect("contours", "contours", "picture", "contours");

    // A parameter that is no output can be shared as well: the picture tells how it was smoothed.
    find("picture")->attach(findInput("picture", "sigma"), findInput("smoothing", "sigma"), "");

    setEverywhere("reader", "file", gridFile.string());
}

Network::~Network()
{
    for (const RefPtr<Step>& step : steps_) step->remove();
}

void Network::connect(const std::string& from, const std::string& output, const std::string& to,
                      const std::string& input)
{
    const RefPtr<Quorl::VSlot> slot = find(from)->getOutput(output);
    const auto code = find(to)->attach(findInput(to, input),
                                       slot ? slot->Parameter : RefPtr<Quorl::VParameter>(), "");
    if (code != VSlotContainer::AttachOk)
        throw GeoidError(from + "." + output + " to " + to + "." + input + ": " +
                         VSlotContainer::AttachErrorCodeMessage(code));
}

void Network::addContext(const View& view)
{
    const RefPtr<Quorl::ValuePool> pool(new Quorl::ValuePool(view.name));
    pools_.push_back(pool);
    set(pool, "region", "west", text(view.region.west));
    set(pool, "region", "east", text(view.region.east));
    set(pool, "region", "south", text(view.region.south));
    set(pool, "region", "north", text(view.region.north));
    set(pool, "region", "width", std::to_string(view.width));
    set(pool, "region", "height", std::to_string(view.height));
    set(pool, "hillshade", "azimuth", text(view.light.azimuth));
    set(pool, "hillshade", "altitude", text(view.light.altitude));
    set(pool, "hillshade", "exaggeration", text(view.light.exaggeration));
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
    find("picture")->init_request(request, 1.0);

    std::vector<Run> runs;
    for (const RefPtr<Quorl::VObject>& object : journal_.take())
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
    const RefPtr<Quorl::VParameter> found = findInput(object, parameter);
    if (!found) throw GeoidError(object + " has no parameter " + parameter);
    if (!found->setValueFromText(newText, pool, "", true, {}, nullptr, nullptr))
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
    for (const RefPtr<Step>& step : steps_) names.push_back(step->getName());
    return names;
}

const RefPtr<Step>& Network::find(const std::string& object) const
{
    const auto step = std::ranges::find(steps_, object, [](const auto& s) { return s->getName(); });
    if (step == steps_.end()) throw GeoidError("there is no object " + object);
    return *step;
}

RefPtr<Quorl::VParameter> Network::findInput(const std::string& object,
                                             const std::string& parameter) const
{
    return find(object)->getParameter(parameter);
}

} // namespace Geoid
