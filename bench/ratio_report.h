#pragma once
// The console output of Google Benchmark, and at its end each figure beside
// a reference measured in the same run: the machine these run on is shared,
// so only ratios compare between runs. Figures are medians of the
// repetitions (real time), or the single run's time without repetitions.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace vx::bench {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const std::string name = run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args);
            if (run.error_occurred)
                continue;
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                medians_[name] = toMs(run.GetAdjustedRealTime(), run.time_unit);
                medians_[name + "@cpu"] = toMs(run.GetAdjustedCPUTime(), run.time_unit);
            } else if (run.run_type == Run::RT_Iteration) {
                samples_[name].push_back(toMs(run.GetAdjustedRealTime(), run.time_unit));
                samples_[name + "@cpu"].push_back(toMs(run.GetAdjustedCPUTime(), run.time_unit));
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // The median in milliseconds, or a negative number when it didn't run.
    double median(const std::string& name) const
    {
        if (auto it = medians_.find(name); it != medians_.end())
            return it->second;
        auto it = samples_.find(name);
        if (it == samples_.end() || it->second.empty())
            return -1;
        std::vector<double> v = it->second;
        std::sort(v.begin(), v.end());
        return v[v.size() / 2];
    }

    // "<what>: <figure> ms, reference <name> <ms> ms, ratio <r> (target ...)",
    // then the same for the CPU time of the benchmark's own thread (on a
    // loaded machine the steadier of the two, where one thread does the work).
    void printRatio(const char* what, const std::string& name, const std::string& reference, const char* target) const
    {
        const double figure = median(name), base = median(reference);
        if (figure < 0 || base <= 0) {
            std::printf("%s: not measured\n", what);
            return;
        }
        std::printf("%s: %.3f ms; reference %s %.3f ms; ratio %.2f (target %s)\n", what, figure, reference.c_str(),
                    base, figure / base, target);
        const double cpu = median(name + "@cpu"), cpuBase = median(reference + "@cpu");
        if (cpu >= 0 && cpuBase > 0)
            std::printf("    thread CPU: %.3f ms; reference %.3f ms; ratio %.2f\n", cpu, cpuBase, cpu / cpuBase);
    }

private:
    static double toMs(double value, benchmark::TimeUnit unit)
    {
        switch (unit) {
        case benchmark::kNanosecond: return value / 1e6;
        case benchmark::kMicrosecond: return value / 1e3;
        case benchmark::kMillisecond: return value;
        default: return value * 1e3;
        }
    }

    std::map<std::string, double> medians_;
    std::map<std::string, std::vector<double>> samples_;
};

} // namespace vx::bench
