#include "tools/why/WhyText.h"

#include <algorithm>
#include <ostream>

#include "tools/recording/DecisionSentence.h"
#include "tools/report/Metrics.h"

namespace fyn::productionrules {

namespace {

constexpr std::size_t kTitleWidth = 14;
constexpr std::size_t kMostOthers = 3;

void line(std::ostream& out, std::string title, const std::string& text) {
  title.resize(std::max(kTitleWidth, title.size() + 1), ' ');
  out << title << text << '\n';
}

std::string listOf(const std::vector<std::int64_t>& ids) {
  std::string text;
  for (const std::int64_t id : ids) {
    text += (text.empty() ? "" : ", ") + std::to_string(id);
  }
  return text.empty() ? "nobody" : text;
}

std::string assignment(const KeyChange& change) {
  return std::string(change.key->key) + "=" + std::to_string(change.to) + " instead of " +
         std::to_string(change.from);
}

void writePictures(std::ostream& out, const WhyAnswer& answer) {
  if (answer.pictures.empty()) {
    line(out, "Picture", "none yet");
  }
  for (const ShownPicture& picture : answer.pictures) {
    const std::string stream =
        answer.pictures.size() > 1 ? "stream " + std::to_string(picture.stream) + ": " : "";
    line(out, "Picture",
         stream + layoutToText(picture.type) + " since " + clockText(picture.since) + ", shows " +
             listOf(picture.people));
  }
}

std::string unseenText(const AskedPerson& person, const std::string& what) {
  return what + " since " + clockText(person.stage->since) +
         (person.seenAgain ? ", again from " + clockText(*person.seenAgain) : ", and never again") +
         ": no setting shows who is not detected";
}

std::string fateText(const AskedPerson& person, const WhyAnswer& answer) {
  if (!person.stage) {
    return "is nowhere in this recording; at this moment there were " + listOf(answer.present);
  }
  const std::string since = " since " + clockText(person.stage->since);
  switch (person.stage->fate) {
    case PersonFate::NotThere:
      return answer.knowsTruth ? "was not in the room" + since : unseenText(person, "not detected");
    case PersonFate::NotDetected:
      return unseenText(person, "in the room, off the picture and not detected");
    case PersonFate::OffScreen:
      return "not in the picture" + since;
    case PersonFate::Cut:
      return "cut off by the frame" + since;
    case PersonFate::Shown:
      return "was in the picture" + since;
  }
  return {};
}

std::string waitText(const OpenWait& wait, std::int64_t t) {
  const std::int64_t waited = t - wait.since;
  const std::int64_t left = std::max<std::int64_t>(0, wait.decision.waitMs - waited);
  return decisionSentence(wait.decision) + "; since " + clockText(wait.since) + ", " + std::to_string(left) +
         " ms were left";
}

void writeWaits(std::ostream& out, const WhyAnswer& answer) {
  for (const OpenWait& wait : answer.waits) {
    const bool isLayout = wait.decision.kind == DecisionKind::Pending;
    if (isLayout) {
      line(out, "Should be",
           std::string(layoutToText(wait.decision.to)) + " with " + listOf(wait.decision.people));
    }
    line(out, "Held back by", waitText(wait, answer.t));
    if (!wait.decision.key.empty()) {
      line(out, "", wait.decision.key + " = " + std::to_string(wait.decision.configuredMs) + " ms");
    }
  }
  if (answer.waits.empty()) {
    line(out, "Held back by", "no wait: by its rules this is the picture that the service wants");
  }
  for (const WaitCount& count : answer.counts) {
    if (count.dropped > 0) {
      line(out, "Before",
           count.key + " began " + std::to_string(count.begun) + " times, and was dropped or began anew " +
               std::to_string(count.dropped) + " times");
    }
  }
  if (answer.latest) {
    line(out, "Latest change",
         clockText(answer.latest->t) + "  " + decisionSentence(answer.latest->decision));
  }
}

std::string priceOf(const char* name, const WhyAnswer& answer) {
  const Metric& metric = *findMetric(name);
  return std::string(metric.label) + " " + metricText(metric, metric.value(answer.before)) + " -> " +
         metricText(metric, metric.value(*answer.after)) + " " + metric.unit;
}

void writeRemedies(std::ostream& out, const WhyAnswer& answer) {
  if (!answer.isSearched) {
    return;
  }
  if (answer.remedies.empty()) {
    line(out, "Would help",
         answer.changedStream ? "no change of a single key keeps the picture calm here"
                              : "no change of a single key shows them at this moment");
    return;
  }
  line(out, "Would help", assignment(answer.remedies.front()));
  line(out, "Its price",
       priceOf("changes_per_minute", answer) + ", " + priceOf("in_view_percent", answer) +
           ", over the whole recording");
  const std::size_t end = std::min(answer.remedies.size(), kMostOthers + 1);
  for (std::size_t index = 1; index < end; ++index) {
    line(out, "So would", assignment(answer.remedies[index]));
  }
}

}  // namespace

void writeWhy(std::ostream& out, const WhyAnswer& answer) {
  out << answer.recording << " at " << clockText(answer.t) << (answer.mode.empty() ? "" : ", " + answer.mode)
      << "\n\n";
  writePictures(out, answer);
  if (answer.changedStream) {
    line(out, "Changed",
         answer.change ? decisionSentence(answer.change->decision) : "without a decision: the frames follow");
  } else {
    for (const AskedPerson& person : answer.persons) {
      line(out, "Person " + std::to_string(person.id), fateText(person, answer));
    }
    if (answer.persons.empty()) {
      line(out, "Missing", "nobody: everybody who was there was in the picture, and no change was near");
    }
    if (answer.isSearched || (answer.persons.empty() && !answer.waits.empty())) {
      writeWaits(out, answer);
    }
  }
  writeRemedies(out, answer);
}

}  // namespace fyn::productionrules
