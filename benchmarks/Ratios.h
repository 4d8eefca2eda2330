#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace QuorlBenchmark
{

/// Reports as the console does, and collects times for a table that sets "subject/ours" beside each
/// other "subject/...". Of repetitions the median counts.
class RatioReporter final : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override;

    /// To standard output. Nothing if no subject has both.
    void printRatios() const;

private:
    struct Subject
    {
        std::string name;
        std::map<std::string, double> nanoseconds; // by what stands behind the slash
    };

    Subject& subject(const std::string& name);

    std::vector<Subject> subjects_; // in the order of the run
};

} // namespace QuorlBenchmark
