#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include <cstdint>
#include <string>
#include <vector>

/// Factories of elements in the registry of plug-ins: found by name, and walked by rank.

namespace QuorlBenchmark
{
namespace
{

std::vector<std::string> names(std::int64_t count)
{
    std::vector<std::string> all;
    for (std::int64_t number = 0; number < count; ++number)
        all.push_back("object " + std::to_string(number));
    return all;
}

class Registry
{
public:
    explicit Registry(const std::vector<std::string>& wanted)
    {
        if (!gst_is_initialized()) gst_init(nullptr, nullptr);
        registry = static_cast<GstRegistry*>(g_object_new(GST_TYPE_REGISTRY, nullptr));
        for (const std::string& name : wanted)
            gst_registry_add_feature(
                registry, GST_PLUGIN_FEATURE(g_object_new(GST_TYPE_ELEMENT_FACTORY, "name",
                                                          name.c_str(), nullptr)));
    }
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;
    ~Registry() { gst_object_unref(registry); }

    GstRegistry* registry = nullptr;
};

void BM_Find(benchmark::State& state)
{
    const std::vector<std::string> wanted = names(state.range(0));
    const Registry registry(wanted);
    for (auto _ : state)
        for (const std::string& name : wanted)
        {
            GstPluginFeature* const found = gst_registry_find_feature(
                registry.registry, name.c_str(), GST_TYPE_ELEMENT_FACTORY);
            if (!found) return state.SkipWithError("a feature was not found");
            gst_object_unref(found);
        }
}

/// As those do that look for the best of several: a list of all, sorted.
void BM_WalkByRank(benchmark::State& state)
{
    const Registry registry(names(state.range(0)));
    for (auto _ : state)
    {
        GList* const features =
            g_list_sort(gst_registry_get_feature_list(registry.registry, GST_TYPE_ELEMENT_FACTORY),
                        gst_plugin_feature_rank_compare_func);
        std::int64_t count = 0;
        for (const GList* place = features; place; place = place->next) ++count;
        gst_plugin_feature_list_free(features);
        if (count != state.range(0)) return state.SkipWithError("not all features were visited");
    }
}

BENCHMARK(BM_Find)
    ->Name("find each by name/GStreamer")
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_WalkByRank)->Name("traverse/GStreamer")->Arg(10000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace QuorlBenchmark
