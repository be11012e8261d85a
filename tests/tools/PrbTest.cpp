#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

using WrongUsage = std::pair<std::vector<std::string>, const char*>;

TEST(Prb, SaysWhatIsWrongInOneLine) {
  const std::vector<WrongUsage> cases{
      {{"frobnicate"}, "prb: unknown command frobnicate (see 'prb --help')\n"},
      {{"repotr"}, "prb: unknown command repotr; did you mean report? (see 'prb --help')\n"},
      {{"help", "config", "chekc"},
       "prb help: unknown command chekc; did you mean check? (see 'prb config --help')\n"},
      {{"report", "--confg", "x"},
       "prb report: unknown option --confg; did you mean --config? (see 'prb report --help')\n"},
      {{"--frobnicate"}, "prb: unknown option --frobnicate (see 'prb --help')\n"},
      {{"ctl", "frobnicate"}, "prb ctl: unknown command frobnicate (see 'prb ctl --help')\n"},
      {{"prop", "--frobnicate"}, "prb prop: unknown option --frobnicate (see 'prb prop --help')\n"},
      {{"ctl", "cameras", "x"},
       "prb ctl cameras: The following argument was not expected: x (see 'prb ctl cameras --help')\n"},
      {{"completion"}, "prb completion: A subcommand is required (see 'prb completion --help')\n"},
      {{"completion", "tcsh"}, "prb completion: unknown command tcsh (see 'prb completion --help')\n"},
      {{"ctl", "reset-layouts", "--bus", "embedded"}, "name the bus of the service with --bus"},
      {{"ctl", "reset-layouts", "--bus", "http://x"}, "http://x"},
      {{"ctl", "mode", "sideways", "--bus", "mqtt://127.0.0.1:1"},
       "unknown mode sideways; the modes are off, group"},
      {{"ctl", "mode", "--bus", "mqtt://127.0.0.1:1"}, "name is required"},
      {{"watch", "--bus", "embedded"}, "name the bus of the service with --bus"},
      {{"play", "/nonexistent.jsonl", "--bus", "mqtt://127.0.0.1:1"}, "/nonexistent.jsonl: cannot be opened"},
      {{"play", "-", "--loop", "--bus", "mqtt://127.0.0.1:1"}, "standard input cannot be played in a loop"},
      {{"record", "--bus", "mqtt://127.0.0.1:1"}, "--output is required"},
      {{"record", "-o", "/nonexistent/x", "--bus", "mqtt://127.0.0.1:1"}, "cannot be opened for writing"},
      {{"record", "-o", "x", "--topic", "ICDOut", "--bus", "mqtt://127.0.0.1:1"}, "a topic begins with '/'"},
      {{"prop", "set", "vendor.fyndebug.timer", "3", "--properties", "memory"}, "gone with this command"},
      {{"config", "check", "/nonexistent/fyn.conf"},
       "prb config check: /nonexistent/fyn.conf: cannot be opened for reading: No such file"},
      {{"compare", "/nowhere.conf", "/nowhere.conf", "x.jsonl"},
       "prb compare: cannot read the configuration file /nowhere.conf\n"},
      {{"compare", "a.conf", "b.conf", "-"},
       "prb compare: every recording is replayed twice, so none can come from standard input\n"},
      {{"why", "-", "--at", "5"}, "cannot come from standard input"},
      {{"why", "x.jsonl", "--at", "noon"}, "a time is given as 02:05.133 (minutes and seconds)"},
      {{"why", "x.jsonl", "--at", "5", "--person", "1", "--change"}, "--person"},
      {{"import"}, "tracks is required"},
      {{"import", "/nonexistent.csv"}, "/nonexistent.csv"},
      {{"import", "-", "--fps", "0"}, "--fps"},
      {{"import", "-", "--image", "0x360"}, "0x360"},
      {{"import", "-", "--pose", "a", "--pose", "b"}, "more pose files than track files"},
      {{"replay", "/no/such/recording"}, "/no/such/recording"},
      {{"replay", "-", "-o", "/no/such/folder/out"}, "/no/such/folder/out"},
      {{"replay", "-", "--dump", "/no/such/folder/dump"}, "/no/such/folder/dump"},
      {{"replay", "-", "--property", "=value"}, "=value"},
      {{"replay", "-", "--config", "/no/such/config"}, "/no/such/config"},
      {{"replay", "-", "--log", "X"}, "X"},
      {{"view", "nowhere.jsonl"}, "nowhere.jsonl: cannot be opened for reading"},
      {{"view"}, "name the bus of the service"},
      {{"view", "-", "--listen", "everywhere"}, "--listen takes a numeric address"},
      {{"view", "-", "--bus", "mqtt://127.0.0.1"}, "--bus"},
      {{"view", "-", "--port", "70000"}, "--port"},
      {{"view", "-", "--config", "nowhere.conf"}, "cannot read the configuration file nowhere.conf"},
      {{"demo", "--people", "99"}, "prb demo: --people: Value 99 not in range 0 to 64"},
      {{"simulate"}, "--seed"},
      {{"simulate", "--seed", "-1"}, "-1"},
      {{"simulate", "--seed", "1", "--people", "65"}, "65"},
      {{"simulate", "--seed", "1", "--cameras", "0"}, "--cameras"},
      {{"simulate", "--seed", "1", "--noise", "loud"}, "loud"},
      {{"simulate", "--seed", "1", "meeting.jsonl"}, "meeting.jsonl"},
      {{"simulate", "--seed", "1", "--errors", "high"}, "high"},
      {{"simulate", "--seed", "1", "--errors", "low", "--noise", "low"}, "--noise"},
      {{"simulate", "--seed", "1", "--missed", "51"}, "--missed"},
      {{"simulate", "--seed", "1", "--seats", "stairs"}, "stairs"},
      {{"simulate", "--seed", "1", "--seats", "row", "--people", "13"},
       "--seats has room for 12 people, not 13"},
      {{"simulate", "--seed", "1", "--come-late", "1"}, "--come-late requires --seats"},
      {{"simulate", "--seed", "1", "--seats", "row", "--come-late", "5"}, "--come-late is at most"},
      {{"simulate", "--seed", "1", "--turns", "-", "--overlap", "5"}, "--overlap"},
  };
  for (const auto& [arguments, fault] : cases) {
    expectRefused(arguments, fault);
  }
}

TEST(Prb, APropertyDoesNotSwallowTheRecordingBehindIt) {
  for (const char* const command : {"replay", "report", "view"}) {
    expectRefused({command, "--property", "a=1", "/nonexistent.jsonl"},
                  "/nonexistent.jsonl: cannot be opened");
  }
}

TEST(Prb, APropertyThatTheServiceWouldPassOverIsRefused) {
  const WrongUsage cases[] = {
      {{"vendor.talkertraking.flag=4"},
       "unknown property vendor.talkertraking.flag; did you mean vendor.talkertracking.flag?"},
      {{"animation.ease.duration=1"},
       "animation.ease.duration is set by the configuration file, not by a property"},
      {{"vendor.talkertracking.flag=people"},
       "vendor.talkertracking.flag must be a whole number, not 'people'"},
      {{"vendor.talkertracking.flag"}, "'vendor.talkertracking.flag' must be KEY=VALUE"},
  };
  for (const auto& [property, fault] : cases) {
    expectRefused({"report", "-", "--property", property.front()},
                  std::string("prb report: ") + fault + "\n");
  }
}

TEST(Prb, EveryCommandIsListedAndHasHelpWithAnExample) {
  const std::string list = runPrbWith({"--help"}).out;
  for (const Subcommand& row : subcommands()) {
    const PrbRun run = runPrbWith({row.name, "--help"});
    EXPECT_EQ(run.status, 0) << row.name;
    EXPECT_EQ(run.err, "");
    EXPECT_NE(run.out.find(row.summary), std::string::npos) << run.out;
    EXPECT_NE(list.find(row.summary), std::string::npos) << row.name;
    EXPECT_NE(run.out.find(std::string("  prb ") + row.name), std::string::npos)
        << row.name << ": no example of its use in\n"
        << run.out;
    // What excludes what is listed in no fixed order.
    EXPECT_EQ(runPrbWith({"help", row.name}).out.size(), run.out.size());
  }
  EXPECT_EQ(runPrbWith({"help"}).out, list);
  EXPECT_EQ(runPrbWith({}).err, list);
  EXPECT_EQ(runPrbWith({}).status, 2);
  EXPECT_EQ(runPrbWith({"help", "config", "check"}).out, runPrbWith({"config", "check", "--help"}).out);
}

/** The words that bash would offer after the given ones; the last word is the one being typed. */
std::string completions(const std::string& words) {
  const std::string script = runPrbWith({"completion", "bash"}).out + "COMP_WORDS=(" + words +
                             ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_prb\n"
                             "echo \"${COMPREPLY[@]}\"\n";
  const ScratchFolder folder;
  const std::string command = "bash " + folder.write("script", script);
  std::string text;
  if (FILE* const pipe = popen(command.c_str(), "r")) {
    char buffer[256];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) {
      text += buffer;
    }
    pclose(pipe);
  }
  return text;
}

TEST(Prb, TheDemoOfARecordingThatTakesNoTimeEnds) {
  const ScratchFolder folder;
  const PrbRun run =
      runPrbWith({"demo", "--scenes", folder.file("scenes"),
                  folder.write("moment", R"({"t":0,"topic":"/camera","payload":{"fynCamId":0}})")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("Played 00:00.000"), std::string::npos) << run.out;
}

TEST(Prb, TheDemoOfARecordingThatIsPipedInPlaysItWholeAndOnce) {
  const ScratchFolder folder;
  const std::string recording = R"({"t":0,"topic":"/camera","payload":{"fynCamId":0}})"
                                "\n"
                                R"({"t":2000,"topic":"/camera","payload":{"fynCamId":0}})";
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(write(ends[1], recording.data(), recording.size()), static_cast<ssize_t>(recording.size()));
  close(ends[1]);
  for (const std::string& from : {std::string("-"), "/dev/fd/" + std::to_string(ends[0])}) {
    const PrbRun run =
        runPrbWith({"demo", "--fast", "--force", "--scenes", folder.file("scenes"), from}, recording);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.find("Ctrl-C"), std::string::npos) << run.out;
    const std::size_t played = run.out.find("Played 00:02.000");
    ASSERT_NE(played, std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("Played ", played + 1), std::string::npos) << run.out;
  }
  close(ends[0]);
}

TEST(Prb, BashCompletesCommandsOptionsAndValues) {
  EXPECT_EQ(completions("prb compl"), "completion\n");
  EXPECT_EQ(completions("prb completion ''"), "bash zsh fish --help -h\n");
  EXPECT_EQ(completions("prb --vers"), "--version\n");
  EXPECT_EQ(completions("prb ctl cameras --b"), "--bus\n");
  EXPECT_EQ(completions("prb ctl --bus x mode p"), "presenter people\n");
  EXPECT_EQ(completions("prb replay x.jsonl --log ''"), "E W I D\n");
  EXPECT_EQ(completions("prb report --property vendor.talkertracking.f"), "vendor.talkertracking.flag\n");
  EXPECT_EQ(completions("prb tune --key persist.fdtimers.groupframe.on"),
            "persist.fdtimers.groupframe.onedge\n");
}

}  // namespace
}  // namespace fyn::productionrules::testing
