#include "Scene.h"

#include <quorl/kit/Network.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/tasks/ThreadManagerValue.h>
#include <quorl/values/VValueTrait.h>

#include <stdexcept>

namespace Shore
{
namespace
{

using Quorl::RefPtr;
using Quorl::VCreatorBase;
using Quorl::VObject;

/// The first way that the child's creator accepts is enough for an object with one output.
void wire(const RefPtr<VObject>& child, const RefPtr<VObject>& parent)
{
    if (!(child >= parent).second)
        throw std::runtime_error(child->getName() + " does not take " + parent->getName());
}

void wireInAllWays(const RefPtr<VObject>& child, const RefPtr<VObject>& parent)
{
    const std::string way = Quorl::connectInAllWays(parent, child);
    if (!way.empty()) throw std::runtime_error(child->getName() + " does not take " + way);
}

} // namespace

Scene::Scene(const Plan& plan)
{
    const auto reader = make("reader", "Grid/Reader");
    const auto region = make("region", "Grid/Region");
    const auto distance = make("distance", "Grid/Distance");
    const auto picture = make("picture", "Picture/Writer");
    wire(region, reader);
    wire(distance, region);
    for (const char* const drawing : {"Grid/Hillshade", "Picture/Colours", "Grid/Contours"})
    {
        const auto step = make(drawing, drawing);
        wire(step, distance);
        wireInAllWays(picture, step);
    }

    set("reader", "file", plan.grid.string());
    set("region", "width", std::to_string(plan.width));
    set("region", "height", std::to_string(plan.width / 2));
    set("Picture/Colours", "low", "-5000");
    set("Picture/Colours", "high", "5000");
    set("Grid/Contours", "interval", "500");
    set("Grid/Hillshade", "exaggeration", "300");
    set("picture", "unit", "km");
    set("picture", "file", plan.picture.string());
}

Scene::~Scene()
{
    for (const auto& [name, step] : steps_) step->remove();
}

RefPtr<VObject> Scene::make(const std::string& name, const std::string& creator)
{
    const RefPtr<VCreatorBase> found = Quorl::findCreator(creator);
    if (!found) throw std::runtime_error("there is no creator " + creator);
    return steps_[name] = found->create(name, Tolmen::Intercube());
}

void Scene::set(const std::string& object, const std::string& slot, const std::string& text)
{
    if (!Quorl::setText(*steps_.at(object), slot, text))
        throw std::runtime_error(object + "." + slot + " cannot be set to " + text);
}

void Scene::setLevel(double metres)
{
    const std::string text = Quorl::VValueTrait<double>::Text(metres);
    set("distance", "level", text);
    set("picture", "title", "Distance to the geoid's height of " + text + " m");
}

bool Scene::request()
{
    Quorl::VRequest request({}, false);
    return steps_.at("picture")->init_request(request, 1.0);
}

bool Scene::isRefining() const
{
    const RefPtr<Quorl::VValue<Quorl::VThreadManager>> tasks =
        steps_.at("distance")->getParameter("tasks")->getValue({}, "");
    return tasks && tasks->isrunning("refine");
}

} // namespace Shore
