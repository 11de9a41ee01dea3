// `make bench`: every row beside its baseline measured in the same run (CPU time, the median of five
// repetitions), then the ratios with their goals, then the start-up time.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "BenchWorld.h"

void RegisterBindingBenchmarks();
double StartupSeconds(int scripts);

namespace {

// Keeps each benchmark's median CPU time (or its single run's) for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
            times[run.run_name.str()] = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};

struct Ratio {
    const char* what;
    const char* measured;
    const char* baseline;
    const char* subtracted;  // a row whose time comes off the measured one (the SDK's own), or null
    bool speedUp;            // the goal is a speed-up: baseline / measured >= goal; else measured / baseline <= goal
    double goal;             // 0: shown without a goal
    double calls;            // calls per timed round, for the times shown
};

const Ratio kRatios[] = {
    {"flight loop dispatch vs vectorcall", "BM_FlightLoop", "BM_FlightLoop_Vectorcall", nullptr, false, 1.3, 1},
    {"draw callback vs vectorcall", "BM_DrawCallback", "BM_DrawCallback_Vectorcall", nullptr, false, 1.3, 1},
    {"window draw vs vectorcall", "BM_WindowDraw", "BM_WindowDraw_Vectorcall", nullptr, false, 1.3, 1},
    {"accessor float getter vs vectorcall", "BM_AccessorGetFloat", "BM_AccessorGetFloat_Vectorcall", nullptr, false,
     1.3, 1},
    {"command handler vs vectorcall", "BM_CommandHandler", "BM_CommandHandler_Vectorcall", nullptr, false, 1.3, 1},
    {"widget message vs vectorcall", "BM_WidgetMessage/1", "BM_WidgetMessage_Vectorcall", nullptr, false, 1.3, 1},
    {"widget message, 200 widgets vs 1", "BM_WidgetMessage/200", "BM_WidgetMessage/1", nullptr, false, 1.1, 1},
    {"flight loop, 100 scripts vs 1", "BM_FlightLoopAmongScripts/100", "BM_FlightLoopAmongScripts/1", nullptr, false,
     1.1, 1},
    {"flight loop, 256 scripts vs 1", "BM_FlightLoopAmongScripts/256", "BM_FlightLoopAmongScripts/1", nullptr, false,
     1.1, 1},
    {"flight loop of 256: last 10 vs first 10", "BM_FlightLoopOf256Scripts/1", "BM_FlightLoopOf256Scripts/0", nullptr,
     false, 1.1, 1},
    {"XPLMGetDataf net of the SDK vs abs(1.5)", "BM_GetDataf", "BM_GetDataf_Abs", "BM_GetDataf_Sdk", false, 1.5,
     kCallsPerRound},
    {"XPLMGetDataf: ctypes vs the plugin", "BM_GetDataf", "BM_GetDataf_Ctypes", nullptr, true, 4.0, kCallsPerRound},
};

// The binding rows (BindingBench.cpp), net of the SDK's time, against the same call of `receive`.
// The first only take their arguments; the others also make what they hand back (an int and a list
// slot for each output, a float for each array element, a str) or read a sequence item by item,
// which a plain call does not, so their ratios are shown without a goal.
const char* const kConvertingRows[] = {"GetDataf",   "FindDataRef",       "SetGraphicsState",
                                       "DrawString", "GetWidgetProperty", "SetWidgetProperty"};
const char* const kFillingRows[] = {"GetDatavf",        "SetDatavf",         "GetWindowGeometry",
                                    "GetMouseLocation", "GetWidgetGeometry", "GetWidgetDescriptor"};
constexpr double kBindingGoal = 1.5;

void PrintRatio(const std::map<std::string, double>& times, const std::string& what, const std::string& measured,
                const std::string& baseline, const std::string& subtracted, bool speedUp, double goal, double calls) {
    auto m = times.find(measured), b = times.find(baseline), s = times.find(subtracted);
    if (m == times.end() || b == times.end() || b->second <= 0) return;
    double time = m->second;
    char net[64] = "";
    if (!subtracted.empty()) {
        if (s == times.end()) return;
        time -= s->second;
        snprintf(net, sizeof net, " (SDK %.1f ns off)", s->second / calls);
    }
    const double ratio = speedUp ? b->second / time : time / b->second;
    const bool met = speedUp ? ratio >= goal : ratio <= goal;
    char target[64] = "no goal: items made or read";
    if (goal > 0)
        snprintf(target, sizeof target, "goal %s %.1fx  %s", speedUp ? ">=" : "<=", goal, met ? "met" : "MISSED");
    printf("%-42s %7.1f ns%s vs %7.1f ns  %5.2fx  %s\n", what.c_str(), time / calls, net, b->second / calls, ratio,
           target);
}

}  // namespace

int main(int argc, char** argv) {
    SetUpBenchWorld();
    RegisterBindingBenchmarks();
    // Medians of five repetitions unless the command line says otherwise; the start-up runs only
    // when every benchmark runs.
    std::vector<char*> args(argv, argv + argc);
    bool repetitionsGiven = false, filtered = false;
    for (int i = 1; i < argc; ++i) {
        repetitionsGiven |= std::strncmp(argv[i], "--benchmark_repetitions", 23) == 0;
        filtered |= std::strncmp(argv[i], "--benchmark_filter", 18) == 0;
    }
    char repetitions[] = "--benchmark_repetitions=5", aggregates[] = "--benchmark_report_aggregates_only=true",
         minTime[] = "--benchmark_min_time=0.1";
    if (!repetitionsGiven) args.insert(args.begin() + 1, {repetitions, aggregates, minTime});
    int count = static_cast<int>(args.size());
    benchmark::Initialize(&count, args.data());
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    printf("\nCPU time per call, each beside its baseline from this run:\n");
    for (const Ratio& r : kRatios)
        PrintRatio(reporter.times, r.what, r.measured, r.baseline, r.subtracted ? r.subtracted : "", r.speedUp, r.goal,
                   r.calls);
    printf(
        "\nSDK functions called from Python, net of the SDK's own time, vs the same call of a builtin that only "
        "answers 1:\n");
    for (const char* row : kConvertingRows) {
        const std::string name = std::string("BM_") + row;
        PrintRatio(reporter.times, row, name, name + "_Receive", name + "_Sdk", false, kBindingGoal, kCallsPerRound);
    }
    for (const char* row : kFillingRows) {
        const std::string name = std::string("BM_") + row;
        PrintRatio(reporter.times, row, name, name + "_Receive", name + "_Sdk", false, 0, kCallsPerRound);
    }

    if (!filtered) {
        printf("\nStart-up, from the start of the process to the first frame (median of five runs):\n");
        for (int scripts : {1, 100}) {
            const double seconds = StartupSeconds(scripts);
            if (seconds < 0)
                printf("%3d scripts: the run failed\n", scripts);
            else if (scripts == 100)
                printf("%3d scripts: %6.1f ms  goal < 500 ms  %s\n", scripts, seconds * 1000,
                       seconds < 0.5 ? "met" : "MISSED");
            else
                printf("%3d scripts: %6.1f ms\n", scripts, seconds * 1000);
        }
    }
    RemoveBenchFolder();
    return 0;
}
