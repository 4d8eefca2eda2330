#include <benchmarks/Ratios.h>

#include <algorithm>
#include <cstdio>

namespace QuorlBenchmark
{
namespace
{

constexpr double kNanosecondsPerSecond = 1e9;

double nanosecondsOf(const benchmark::BenchmarkReporter::Run& run)
{
    return run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) *
           kNanosecondsPerSecond;
}

/// Medians come behind the runs that they are of, so that they are what stays.
bool counts(const benchmark::BenchmarkReporter::Run& run)
{
    using Run = benchmark::BenchmarkReporter::Run;
    return !run.error_occurred &&
           (run.run_type == Run::RT_Iteration || run.aggregate_name == "median");
}

} // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs)
    {
        const std::string name = run.run_name.function_name;
        const auto slash = name.rfind('/');
        if (slash == std::string::npos || !counts(run)) continue;
        subject(name.substr(0, slash)).nanoseconds[name.substr(slash + 1)] = nanosecondsOf(run);
    }
}

void RatioReporter::printRatios() const
{
    std::printf("\n| %-34s | %13s | %-21s | %13s | %7s |\n", "subject", "ours, ns", "beside", "ns",
                "ratio");
    std::printf("|%s|%s:|%s|%s:|%s:|\n", std::string(36, '-').c_str(), std::string(14, '-').c_str(),
                std::string(23, '-').c_str(), std::string(14, '-').c_str(),
                std::string(8, '-').c_str());
    for (const Subject& subject : subjects_)
    {
        const auto ours = subject.nanoseconds.find("ours");
        if (ours == subject.nanoseconds.end()) continue;
        for (const auto& [name, time] : subject.nanoseconds)
            if (name != "ours")
                std::printf("| %-34s | %13.1f | %-21s | %13.1f | %7.2f |\n", subject.name.c_str(),
                            ours->second, name.c_str(), time, ours->second / time);
    }
}

RatioReporter::Subject& RatioReporter::subject(const std::string& name)
{
    const auto known = std::ranges::find(subjects_, name, &Subject::name);
    if (known != subjects_.end()) return *known;
    return subjects_.emplace_back(Subject{name, {}});
}

} // namespace QuorlBenchmark
