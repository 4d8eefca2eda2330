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

void describe(gpointer elementClass, gpointer /*data*/)
{
    gst_element_class_set_static_metadata(static_cast<GstElementClass*>(elementClass), "Element",
                                          "Benchmark", "Does nothing", "Nobody");
}

GType elementType()
{
    static const GType type =
        g_type_register_static_simple(GST_TYPE_ELEMENT, "BenchmarkElement", sizeof(GstElementClass),
                                      describe, sizeof(GstElement), nullptr, GTypeFlags());
    return type;
}

/// The registry of the process, in which there are a few others as well.
class Registry
{
public:
    explicit Registry(const std::vector<std::string>& wanted) : names_(wanted)
    {
        // Nothing is read from the user's folder, nor left there.
        g_setenv("GST_REGISTRY_DISABLE", "yes", TRUE);
        gst_init(nullptr, nullptr);
        registry = gst_registry_get();
        gst_plugin_register_static_full(
            GST_VERSION_MAJOR, GST_VERSION_MINOR, "benchmark", "Elements",
            [](GstPlugin* plugin, gpointer names) -> gboolean {
                for (const std::string& name : *static_cast<std::vector<std::string>*>(names))
                    gst_element_register(plugin, name.c_str(), GST_RANK_PRIMARY, elementType());
                return TRUE;
            },
            "1", "BSD", "quorl", "quorl", "https://localhost", &names_);
    }
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// The newest first, as they stand in its list.
    ~Registry()
    {
        for (auto name = names_.rbegin(); name != names_.rend(); ++name)
            if (GstPluginFeature* const feature =
                    gst_registry_lookup_feature(registry, name->c_str()))
            {
                gst_registry_remove_feature(registry, feature);
                gst_object_unref(feature);
            }
    }

    GstRegistry* registry = nullptr;

private:
    std::vector<std::string> names_;
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
        if (count < state.range(0)) return state.SkipWithError("not all features were visited");
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
