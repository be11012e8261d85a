#include "tools/view/RecordingPlay.h"

#include <utility>

#include "platform/Topics.h"
#include "tools/base/ProgressBar.h"
#include "tools/recording/RecordingReader.h"
#include "tools/recording/RecordingWriter.h"
#include "tools/view/LiveRoom.h"
#include "tools/view/ReplayLines.h"

namespace fyn::productionrules {

namespace {

/** So many faults are told one by one. */
constexpr int kMostNotices = 100;

/** Reads a recording and passes over what is malformed. */
class PatientReader {
 public:
  using Notice = std::function<void(const std::string& words)>;

  PatientReader(InputFile& input, Notice notice)
      : mInput(input), mReader(input.stream(), input.name()), mNotice(std::move(notice)) {}

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
      mNotice("in all, " + std::to_string(mFaults) + " lines of " + mInput.name() +
              " could not be read and were left out");
    }
  }

  std::uint64_t bytesRead() const { return mReader.bytesRead(); }

 private:
  void sayFault(const std::string& fault) {
    if (++mFaults <= kMostNotices) {
      mNotice(fault + "; the line was left out");
    }
  }

  InputFile& mInput;
  RecordingReader mReader;
  const Notice mNotice;
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
  PatientReader reader(input, [&lines](const std::string& words) { lines.notice(words); });
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

bool showRecorded(InputFile& input, LineLog& log, PrbContext& context,
                  const std::function<bool()>& isStopped) {
  std::int64_t t = 0;
  const auto notice = [&](const std::string& words) { log.put(noticeLine(t, words)); };
  LiveRoom room(log, [&t] { return t; });
  PatientReader reader(input, notice);
  ProgressBar bar(context.err, context.errIsTerminal, "read", input.size());
  bool hasPictures = false;
  RecordingEvent event;
  while (reader.next(event)) {
    if (isStopped()) {
      return false;
    }
    t = event.t;
    if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
      hasPictures = hasPictures || message->topic == topics::kScene;
      room.onMessage(message->topic, message->payload);
    } else if (!std::holds_alternative<Truth>(event.what)) {
      log.put({t, LineWorth::Kept, {}, recordingLine(event)});
    }
    bar.update(reader.bytesRead());
  }
  if (!hasPictures) {
    notice(input.name() + " holds no pictures of a service: record with 'prb record --outputs'");
  }
  reader.sayHowMany();
  log.finish();
  return true;
}

}  // namespace fyn::productionrules
