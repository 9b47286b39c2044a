#include "CommandParser.h"
#include "CommandLineReader.h"
#include "HelperOptions.h"

#include <gtest/gtest.h>

namespace {

struct ParseCase {
    std::string line;
    std::optional<Command> expected; // nullopt: refused
    std::string error;               // part of the refusal
};

Command setFan(std::uint32_t id, std::uint32_t rpm) {
    return {CommandKind::setFan, id, {rpm}};
}
Command setAll(std::vector<std::uint32_t> rpms) {
    return {CommandKind::setAll, 0, std::move(rpms)};
}
Command fanAuto(std::uint32_t id) {
    return {CommandKind::fanAuto, id, {}};
}

TEST(CommandParser, AcceptsExactlyTheFourFormsAndRefusesTheRest) {
    std::string ones;
    for (int i = 0; i < 59; ++i)
        ones += " 1";
    const std::string longest = "set-all 10" + ones; // exactly 128 bytes
    std::vector<std::uint32_t> longestRpms(60, 1);
    longestRpms[0] = 10;
    const std::vector<ParseCase> cases = {
        {"quit", Command{}, ""},
        {"set-fan 0 3000", setFan(0, 3000), ""},
        {"set-fan 12 0", setFan(12, 0), ""},
        {"set-fan 1 007", setFan(1, 7), ""},
        {"set-all 0", setAll({0}), ""},
        {"set-all 1800 0 2401", setAll({1800, 0, 2401}), ""},
        {"fan-auto 3", fanAuto(3), ""},
        {"set-fan 0 999999999", setFan(0, 999999999), ""},
        {"", std::nullopt, "unknown command"},
        {"QUIT", std::nullopt, "unknown command"},
        {"reboot", std::nullopt, "unknown command"},
        {"quit now", std::nullopt, "wrong number of arguments"},
        {"quit ", std::nullopt, "wrong number of arguments"},
        {"set-fan 0", std::nullopt, "wrong number of arguments"},
        {"set-fan 0 1 2", std::nullopt, "wrong number of arguments"},
        {"set-all", std::nullopt, "wrong number of arguments"},
        {"fan-auto", std::nullopt, "wrong number of arguments"},
        {"fan-auto 1 2", std::nullopt, "wrong number of arguments"},
        {"set-fan -1 3000", std::nullopt, "negative number"},
        {"set-fan 0 -3000", std::nullopt, "negative number"},
        {"set-all 100 -0", std::nullopt, "negative number"},
        {"set-fan 0 3000.5", std::nullopt, "not a decimal number"},
        {"set-fan 0 0x10", std::nullopt, "not a decimal number"},
        {"set-fan 0 +5", std::nullopt, "not a decimal number"},
        {"set-fan 0 3000\r", std::nullopt, "not a decimal number"},
        {"set-fan 0 1e3", std::nullopt, "not a decimal number"},
        {"set-fan  0 3000", std::nullopt, "wrong number of arguments"},
        {"set-fan 0  3000", std::nullopt, "wrong number of arguments"},
        {"set-all 1  2", std::nullopt, "missing number or extra space"},
        {"set-all 1 ", std::nullopt, "missing number or extra space"},
        {" quit", std::nullopt, "unknown command"},
        {"set-fan\t0 3000", std::nullopt, "unknown command"},
        {"set-fan 0 1000000000", std::nullopt, "number too large"},
        {"set-fan 4294967297 1", std::nullopt, "number too large"},
        {longest, setAll(longestRpms), ""},
        {"set-all 100" + ones, std::nullopt, "longer than 128 bytes"},
        {std::string("quit\0", 5), std::nullopt, "unknown command"},
    };
    for (const ParseCase& c : cases) {
        SCOPED_TRACE("line: " + c.line);
        const ParsedCommand parsed = parseCommand(c.line);
        EXPECT_EQ(parsed.command, c.expected);
        if (!c.expected) {
            EXPECT_NE(parsed.error.find(c.error), std::string::npos) << parsed.error;
        }
    }
}

TEST(CommandLineReader, SplitsLinesAcrossChunksAndCutsOverlongLinesOnce) {
    CommandLineReader reader;
    reader.append("set-fan 0 ");
    EXPECT_FALSE(reader.nextLine());
    reader.append("3000\nquit\nfan-");
    EXPECT_EQ(reader.nextLine(), "set-fan 0 3000");
    EXPECT_EQ(reader.nextLine(), "quit");
    EXPECT_FALSE(reader.nextLine());

    // A line of 10,000 bytes ending in what looks like a command must not run it.
    reader.append("auto 1\n" + std::string(10000, 'x') + " quit\nset-all 5\n");
    EXPECT_EQ(reader.nextLine(), "fan-auto 1");
    const auto overlong = reader.nextLine();
    ASSERT_TRUE(overlong);
    EXPECT_EQ(overlong->size(), maxCommandLineBytes + 1);
    EXPECT_FALSE(parseCommand(*overlong).command);
    EXPECT_EQ(reader.nextLine(), "set-all 5");
    EXPECT_FALSE(reader.nextLine());

    reader.append("\n");
    EXPECT_EQ(reader.nextLine(), "");
}

TEST(HelperOptions, ParsesModesAndSysfsRoot) {
    struct Case {
        std::vector<std::string_view> arguments;
        bool valid;
        HelperMode mode;
        std::optional<std::string> root;
    };
    const std::vector<Case> cases = {
        {{"--all"}, true, HelperMode::oneShot, std::nullopt},
        {{"--daemon"}, true, HelperMode::daemon, std::nullopt},
        {{"--daemon", "--sysfs-root", "/tmp/x"}, true, HelperMode::daemon, "/tmp/x"},
        {{"--sysfs-root", "/tmp/x", "--all"}, true, HelperMode::oneShot, "/tmp/x"},
        {{}, false, {}, {}},
        {{"--all", "--daemon"}, false, {}, {}},
        {{"--all", "--all"}, false, {}, {}},
        {{"--all", "--sysfs-root"}, false, {}, {}},
        {{"--all", "--sysfs-root", ""}, false, {}, {}},
        {{"--all", "--sysfs-root", "/a", "--sysfs-root", "/b"}, false, {}, {}},
        {{"--all", "extra"}, false, {}, {}},
        {{"-all"}, false, {}, {}},
    };
    for (const Case& c : cases) {
        const ParsedOptions parsed = parseHelperOptions(c.arguments);
        ASSERT_EQ(parsed.options.has_value(), c.valid) << c.arguments.size();
        if (!c.valid) {
            EXPECT_EQ(parsed.error, helperUsage);
            continue;
        }
        EXPECT_EQ(parsed.options->mode, c.mode);
        EXPECT_EQ(parsed.options->sysfsRoot, c.root);
    }
}

} // namespace
