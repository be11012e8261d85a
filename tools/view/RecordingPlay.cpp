#include "tools/view/RecordingPlay.h"

#include "tools/base/ProgressBar.h"
#include "tools/recording/RecordingReader.h"
#include "tools/view/ReplayLines.h"

namespace fyn::productionrules {

namespace {

/** So many faults are told one by one. */
constexpr int kMostNotices = 100;

/** Reads a recording and passes over what is malformed. */
class PatientReader {
 public:
  PatientReader(InputFile& input, ReplayLines& lines)
      : mInput(input), mReader(input.stream(), input.name()), mLines(lines) {}

  bool next(RecordingEvent& event) {
    for (;;) {
      try {
        return mReader.next(event);
      } catch (const UsageError& fault) {
        sayFault(fault.what());
        if (mInput.stream().bad()) {
          return false;
        }
      }
    }
  }

  void sayHowMany() {
    if (mFaults > kMostNotices) {
      mLines.notice("in all, " + std::to_string(mFaults) + " lines of " + mInput.name() +
                    " could not be read and were left out");
    }
  }

  std::uint64_t bytesRead() const { return mReader.bytesRead(); }

 private:
  void sayFault(const std::string& fault) {
    if (++mFaults <= kMostNotices) {
      mLines.notice(fault + "; the line was left out");
    }
  }

  InputFile& mInput;
  RecordingReader mReader;
  ReplayLines& mLines;
  int mFaults = 0;
};

}  // namespace

bool playRecording(InputFile& input, ReplayOptions options, LineLog& log, PrbContext& context,
                   const std::function<bool()>& isStopped) {
  ReplayLines lines(log);
  options.standardOutput = &context.err;
  options.dumpPath = "/dev/null";
  options.decisions = &lines.decisions();
  Replay replay(options, lines);
  lines.watch(replay);
  PatientReader reader(input, lines);
  ProgressBar bar(context.err, context.errIsTerminal, "replay", input.size());
  RecordingEvent event;
  while (reader.next(event)) {
    if (isStopped()) {
      return false;
    }
    lines.handle(event);
    bar.update(reader.bytesRead());
  }
  lines.finish();
  reader.sayHowMany();
  log.finish();
  return true;
}

}  // namespace fyn::productionrules
