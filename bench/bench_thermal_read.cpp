// One sampling tick's thermal read through the real smc_helper, beside the bare
// cost of starting a program. The link passes only "--all"; to reach a fake tree
// the helper also gets "--sysfs-root", through the same spawn-wait-read-decode path
// readAll takes (a wrapper script would add a shell's start to every read; that
// cost is shown separately).
#include "monitors/ThermalAnswerDecoder.h"
#include "monitors/ThermalMonitor.h"
#include "monitors/linux/ChildProcess.h"

#include <benchmark/benchmark.h>

#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

const std::string helper = VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";

void writeFile(const fs::path& file, const std::string& content) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << content << "\n";
}

void addChip(const fs::path& root, const std::string& device, const std::string& hwmon,
             const std::string& name) {
    const fs::path dir = root / "sys/devices" / device / "hwmon" / hwmon;
    writeFile(dir / "name", name);
    fs::create_directories(root / "sys/class/hwmon");
    fs::create_symlink(fs::path("../../devices") / device / "hwmon" / hwmon,
                       root / "sys/class/hwmon" / hwmon);
}

// 30 temperature sensors and 3 fans: a coretemp package with 16 cores, an nct6775
// board chip with 10 inputs and 3 pwm fans, and an NVMe drive with 3 sensors.
struct FakeMachine {
    fs::path root;
    fs::path empty;
    fs::path wrapper;

    FakeMachine() {
        std::string pattern = "/tmp/vorlune-bench-thermal-XXXXXX";
        root = mkdtemp(pattern.data());
        empty = root / "empty";
        fs::create_directories(empty / "sys/class/hwmon");
        fs::create_directories(empty / "sys/devices");
        const fs::path tree = root / "tree";

        addChip(tree, "platform/coretemp.0", "hwmon3", "coretemp");
        const fs::path cpu = tree / "sys/devices/platform/coretemp.0/hwmon/hwmon3";
        writeFile(cpu / "temp1_input", "52000");
        writeFile(cpu / "temp1_label", "Package id 0");
        for (int core = 0; core < 16; ++core) {
            writeFile(cpu / ("temp" + std::to_string(core + 2) + "_input"),
                      std::to_string(45000 + core * 500));
            writeFile(cpu / ("temp" + std::to_string(core + 2) + "_label"),
                      "Core " + std::to_string(core));
        }

        addChip(tree, "platform/nct6775.656", "hwmon5", "nct6775");
        const fs::path board = tree / "sys/devices/platform/nct6775.656/hwmon/hwmon5";
        const char* labels[] = {"SYSTIN",       "CPUTIN",       "AUXTIN0",      "AUXTIN1",
                                "AUXTIN2",      "AUXTIN3",      "PECI Agent 0", "PCH_CHIP_TEMP",
                                "PCH_CPU_TEMP", "SMBUSMASTER 0"};
        for (int n = 1; n <= 10; ++n) {
            writeFile(board / ("temp" + std::to_string(n) + "_input"),
                      std::to_string(30000 + n * 1000));
            writeFile(board / ("temp" + std::to_string(n) + "_label"), labels[n - 1]);
        }
        for (int n = 1; n <= 3; ++n) {
            const std::string fan = "fan" + std::to_string(n);
            writeFile(board / (fan + "_input"), std::to_string(900 + n * 100));
            writeFile(board / (fan + "_min"), "300");
            writeFile(board / ("pwm" + std::to_string(n)), "120");
            writeFile(board / ("pwm" + std::to_string(n) + "_enable"), "5");
        }

        addChip(tree, "pci0000:00/0000:00:1d.0/0000:3d:00.0/nvme/nvme0", "hwmon1", "nvme");
        const fs::path ssd =
            tree / "sys/devices/pci0000:00/0000:00:1d.0/0000:3d:00.0/nvme/nvme0/hwmon/hwmon1";
        const char* ssdLabels[] = {"Composite", "Sensor 1", "Sensor 2"};
        for (int n = 1; n <= 3; ++n) {
            writeFile(ssd / ("temp" + std::to_string(n) + "_input"),
                      std::to_string(38000 + n * 1000));
            writeFile(ssd / ("temp" + std::to_string(n) + "_label"), ssdLabels[n - 1]);
        }

        wrapper = root / "smc_helper_wrapper";
        std::ofstream(wrapper) << "#!/bin/sh\nexec " << helper << " \"$@\" --sysfs-root "
                               << tree.string() << "\n";
        chmod(wrapper.c_str(), 0755);
    }
    ~FakeMachine() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
    fs::path tree() const { return root / "tree"; }
};

const FakeMachine& machine() {
    static const FakeMachine instance;
    return instance;
}

ThermalReadings readHelper(const fs::path& root) {
    const auto answer =
        ChildProcess::runForOutput(helper, {"--all", "--sysfs-root", root.string()}, 1500ms);
    return answer ? decodeThermalAnswer(*answer) : emptyThermalReadings;
}

void reportShape(benchmark::State& state, const ThermalReadings& readings) {
    state.counters["sensors"] = static_cast<double>(readings.sensors.size());
    state.counters["fans"] = static_cast<double>(readings.fans.size());
}

void BM_ReadAllFakeMachine(benchmark::State& state) {
    const ThermalReadings check = readHelper(machine().tree());
    if (check.sensors.size() != 30 || check.fans.size() != 3) {
        state.SkipWithError("the helper's answer for the fake machine lacks sensors or fans");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(readHelper(machine().tree()));
    reportShape(state, check);
}

void BM_ReadAllThroughShellWrapper(benchmark::State& state) {
    const ThermalMonitor monitor("/nonexistent/vorlune_smc_helper");
    const std::string wrapper = machine().wrapper.string();
    for (auto _ : state)
        benchmark::DoNotOptimize(monitor.readAll(wrapper));
    reportShape(state, monitor.readAll(wrapper));
}

// The same answer from a helper kept running (--serve), as the app reads it each tick: one
// request line and one answer line, the hwmon files held open. The wrapper's shell runs
// once, when the helper starts.
void BM_ReadResidentFakeMachine(benchmark::State& state) {
    ThermalMonitor monitor("/nonexistent/vorlune_smc_helper");
    const std::string wrapper = machine().wrapper.string();
    const ThermalReadings check = monitor.readResident(wrapper);
    if (check.sensors.size() != 30 || check.fans.size() != 3) {
        state.SkipWithError("the serving helper's answer lacks sensors or fans");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(monitor.readResident(wrapper));
    reportShape(state, check);
}

// The same program with nothing to read: what starting a program linked like the
// helper costs, with its answer read back.
void BM_SpawnHelperEmptyMachine(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(readHelper(machine().empty));
    reportShape(state, readHelper(machine().empty));
}

// A trivial dynamically linked C program printing a 1 KB answer.
void BM_SpawnEcho1KB(benchmark::State& state) {
    const std::string kilobyte(1023, 'x');
    for (auto _ : state)
        benchmark::DoNotOptimize(ChildProcess::runForOutput("/bin/echo", {kilobyte}, 1500ms));
}

// The application's share of a read: decoding the answer and choosing temperatures.
void BM_DecodeFakeMachineAnswer(benchmark::State& state) {
    const auto answer = ChildProcess::runForOutput(
        helper, {"--all", "--sysfs-root", machine().tree().string()}, 1500ms);
    if (!answer) {
        state.SkipWithError("the helper gave no answer");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(decodeThermalAnswer(*answer));
    state.counters["bytes"] = static_cast<double>(answer->size());
}

void configure(benchmark::internal::Benchmark* bench) {
    bench->UseRealTime()
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(10)
        ->ReportAggregatesOnly(true);
}

BENCHMARK(BM_SpawnEcho1KB)->Apply(configure);
BENCHMARK(BM_SpawnHelperEmptyMachine)->Apply(configure);
BENCHMARK(BM_ReadAllFakeMachine)->Apply(configure);
BENCHMARK(BM_ReadAllThroughShellWrapper)->Apply(configure);
BENCHMARK(BM_ReadResidentFakeMachine)->Apply(configure);
BENCHMARK(BM_DecodeFakeMachineAnswer)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
