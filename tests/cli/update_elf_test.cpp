#include "cli/command_line.h"
#include "elf/elf_delivery.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>

namespace lanecfg_test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// Updates of the ELF of a delivery.
class UpdateElfCommand : public CommandLine {
  protected:
    std::vector<std::string> updateOf(const std::string& elf, const std::string& workDir,
                                      const std::string& request = "sxa_basic") const {
        return {"update-elf", requestPath(request), "--elf", elf, "--work-dir", workDir};
    }
    ProgramResult update() const { return run(updateOf(delivery.elfFile, delivery.work.path())); }

    /// Words of the rate table that the memory image of a request has.
    wordList tableOf(const std::string& request) const {
        const nlohmann::json image = answerOf({"memory", requestPath(request)});
        return wordsOfText(image.at("@00016000").get<std::string>());
    }

    const Delivery delivery;
};

TEST_F(UpdateElfCommand, PutsTheTableOfTheMemoryImageIntoTheSection) {
    const ProgramResult result = update();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    delivery.expectTable(tableOf("sxa_basic"));
}

TEST_F(UpdateElfCommand, PutsATableOfManyRatesIn) {
    const ProgramResult result =
        run(updateOf(delivery.elfFile, delivery.work.path(), "sxa_multi_rate"));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    delivery.expectTable(tableOf("sxa_multi_rate"));
}

TEST_F(UpdateElfCommand, AnswersWithTheFilesOfTheRun) {
    const nlohmann::json expected = {{"elf", delivery.elfFile},
                                     {"rate_table", delivery.work.rateTableFile()},
                                     {"log", delivery.work.logFile()}};
    EXPECT_EQ(answerOf(updateOf(delivery.elfFile, delivery.work.path())), expected);
}

TEST_F(UpdateElfCommand, TakesPathsRelativeToItsOwnDirectory) {
    workingDirectory = delivery.work.outside().path().string();
    const ProgramResult result = run(updateOf("firmware.elf", "work"));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    delivery.expectTable(tableOf("sxa_basic"));
}

TEST_F(UpdateElfCommand, MakesTheScriptExecutable) {
    fs::permissions(delivery.work.scriptFile(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(update().exitCode, 0);
}

TEST_F(UpdateElfCommand, DoesNotRunTheScriptOnARequestThatCannotBeLoaded) {
    expectFailure(run({"update-elf", "/nonexistent.json", "--elf", delivery.elfFile, "--work-dir",
                       delivery.work.path()}),
                  1, "Error in parsing the file /nonexistent.json.");
    EXPECT_FALSE(fs::exists(delivery.work.logFile()));
    EXPECT_FALSE(fs::exists(delivery.work.rateTableFile()));
}

TEST_F(UpdateElfCommand, NamesTheRegisterWhoseOffsetIsNoNumber) {
    SxaDatabase database;
    database.registers["PIPE_CTRL_CFG7"]["Offset"] = "zz";
    const std::string folder = database.writeTo(directory);
    std::vector<std::string> arguments = updateOf(delivery.elfFile, delivery.work.path());
    arguments.insert(arguments.end(), {"--database", folder});
    const ProgramResult result = run(arguments);
    expectFailure(result, 1,
                  "no ELF update: The register PIPE_CTRL_CFG7 of the file " + folder +
                      "/registers.json has the \"Offset\" \"zz\", which is no hexadecimal number.");
    EXPECT_THAT(result.errors, testing::Not(HasSubstr("stoul")));
}

TEST_F(CommandLine, UpdatesAnElfWhosePathsHaveBlanksQuotesSemicolonsAndLineFeeds) {
    const Delivery delivery(awkwardName, std::string(awkwardName) + ".elf");
    const ProgramResult result = run({"update-elf", requestPath("sxa_basic"), "--elf",
                                      delivery.elfFile, "--work-dir", delivery.work.path()});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(wordsOf(delivery.section(".rate_table")),
              wordList(sectionBytes / bytesPerWord, 0xA5A5A5A5U));
}

/// What is missing or wrong, and what is said about it.
struct Failure {
    std::string name;
    std::function<void(const Delivery&)> change;
    std::function<std::string(const Delivery&)> message;
};

std::string scriptFailed(const Delivery& delivery) {
    return "The ELF file " + delivery.elfFile + " was not updated: the script " +
           delivery.work.scriptFile() + " failed; its log is " + delivery.work.logFile() + ".";
}

/// A pipe in the place of a file that an update writes: opening it would wait for a reader.
Failure pipeFailure(const std::string& name, std::string (ElfWorkDirectory::*file)() const) {
    return {name,
            [file](const Delivery& delivery) {
                ASSERT_EQ(mkfifo((delivery.work.*file)().c_str(), 0600), 0);
            },
            [file](const Delivery& delivery) {
                return "Cannot write the file " + (delivery.work.*file)() +
                       ": It is no regular file.";
            }};
}

class UpdateElfFailure : public UpdateElfCommand, public testing::WithParamInterface<Failure> {};

TEST_P(UpdateElfFailure, IsToldAndLeavesTheElf) {
    GetParam().change(delivery);
    const bool hasElf = fs::exists(delivery.elfFile);
    const std::string before = hasElf ? readFile(delivery.elfFile) : std::string();
    expectFailure(update(), 1, GetParam().message(delivery));
    EXPECT_EQ(fs::exists(delivery.elfFile), hasElf);
    EXPECT_EQ(hasElf ? readFile(delivery.elfFile) : std::string(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Each, UpdateElfFailure,
    testing::Values(
        Failure{"NoElf", [](const Delivery& delivery) { fs::remove(delivery.elfFile); },
                [](const Delivery& delivery) {
                    return "There is no ELF file " + delivery.elfFile + ".";
                }},
        Failure{
            "ElfThatIsNone",
            [](const Delivery& delivery) { delivery.work.outside().write("firmware.elf", "text"); },
            scriptFailed},
        Failure{"NoTool", [](const Delivery& delivery) { fs::remove(delivery.work.toolFile()); },
                [](const Delivery& /*delivery*/) {
                    return std::string(
                        "there is no object-copy tool: neither is pco-objcopy on the search path, "
                        "nor does the variable CORVANE_SDK lead to one");
                }},
        Failure{"NoScript",
                [](const Delivery& delivery) { fs::remove(delivery.work.scriptFile()); },
                [](const Delivery& delivery) {
                    return "there is no script " + delivery.work.scriptFile() +
                           ". It is delivered with the firmware";
                }},
        Failure{"ScriptThatCannotBeMadeExecutable",
                [](const Delivery& delivery) {
                    fs::remove(delivery.work.scriptFile());
                    fs::create_directory(delivery.work.scriptFile());
                },
                [](const Delivery& delivery) {
                    return "the script " + delivery.work.scriptFile() +
                           " can't be made executable.";
                }},
        Failure{"ScriptThatFails",
                [](const Delivery& delivery) { delivery.work.writeScript("exit 3\n"); },
                scriptFailed},
        Failure{"ScriptThatNamesNoInterpreter",
                [](const Delivery& delivery) {
                    delivery.work.outside().write("work/update_elf.sh", "exit 0\n");
                },
                scriptFailed},
        Failure{"NoDirectory",
                [](const Delivery& delivery) { fs::remove_all(delivery.work.path()); },
                [](const Delivery& delivery) {
                    return "There is no directory " + delivery.work.path() +
                           ". Name the one that holds update_elf.sh";
                }},
        Failure{
            "TableThatCannotBeWritten",
            [](const Delivery& delivery) { fs::create_directory(delivery.work.rateTableFile()); },
            [](const Delivery& delivery) {
                return "Cannot write the file " + delivery.work.rateTableFile() +
                       ": Is a directory";
            }},
        Failure{"LogThatCannotBeWritten",
                [](const Delivery& delivery) { fs::create_directory(delivery.work.logFile()); },
                [](const Delivery& delivery) {
                    return "Cannot write the file " + delivery.work.logFile() + ": Is a directory";
                }},
        pipeFailure("TableThatIsAPipe", &ElfWorkDirectory::rateTableFile),
        pipeFailure("LogThatIsAPipe", &ElfWorkDirectory::logFile),
        Failure{"ElfInThePlaceOfTheTable",
                [](const Delivery& delivery) {
                    fs::create_hard_link(delivery.elfFile, delivery.work.rateTableFile());
                },
                [](const Delivery& delivery) {
                    return "The file " + delivery.work.rateTableFile() +
                           " is overwritten by an update, and is its request or ELF too.";
                }}),
    CaseName());

TEST_F(UpdateElfCommand, DoesNotOverwriteItsRequestWithTheTable) {
    const std::string request = bundledRequest("sxa_basic").dump();
    std::ofstream(delivery.work.rateTableFile()) << request;
    expectFailure(run({"update-elf", delivery.work.rateTableFile(), "--elf", delivery.elfFile,
                       "--work-dir", delivery.work.path()}),
                  1, "is overwritten by an update, and is its request or ELF too.");
    EXPECT_EQ(readFile(delivery.work.rateTableFile()), request);
}

TEST_F(UpdateElfCommand, DoesNotOverwriteItsFilesWithTheAnswer) {
    const std::string script = readFile(delivery.work.scriptFile());
    const std::string elf = readFile(delivery.elfFile);
    for (const std::string& file : {delivery.elfFile, delivery.work.scriptFile(),
                                    delivery.work.rateTableFile(), delivery.work.logFile()}) {
        std::vector<std::string> arguments = updateOf(delivery.elfFile, delivery.work.path());
        arguments.insert(arguments.end(), {"-o", file});
        expectFailure(run(arguments), 2, "-o names the file " + file);
    }
    EXPECT_EQ(readFile(delivery.work.scriptFile()), script);
    EXPECT_EQ(readFile(delivery.elfFile), elf);
    EXPECT_FALSE(fs::exists(delivery.work.rateTableFile()));
}

TEST_F(UpdateElfCommand, IsRefusedInADirectoryThatNobodyCanWriteTo) {
    // Not even the superuser makes files there.
    expectFailure(run(updateOf(delivery.elfFile, "/proc")), 1,
                  "Cannot write the file /proc/rate_table.txt: ");
}

TEST_F(UpdateElfCommand, LeavesTheReasonInTheLog) {
    delivery.work.writeScript("echo reason >&2\nexit 3\n");
    EXPECT_EQ(update().exitCode, 1);
    EXPECT_EQ(readFile(delivery.work.logFile()), "reason\n");
}

TEST_F(UpdateElfCommand, NeedsAnElfAndAWorkDirectory) {
    expectFailure(run({"update-elf", requestPath("sxa_basic"), "--work-dir", "quad"}), 2,
                  "--elf is required");
    expectFailure(run({"update-elf", requestPath("sxa_basic"), "--elf", "firmware.elf"}), 2,
                  "--work-dir is required");
}

TEST_F(UpdateElfCommand, TakesNoEmptyPaths) {
    expectFailure(run(updateOf("", "quad")), 2, "--elf: the value is empty");
    expectFailure(run(updateOf("firmware.elf", "")), 2, "--work-dir: the value is empty");
}

}  // namespace
}  // namespace lanecfg_test
