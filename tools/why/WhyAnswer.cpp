#include "tools/why/WhyAnswer.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>

#include "platform/ServiceStateScope.h"
#include "tools/recording/DecisionSentence.h"
#include "tools/why/RemedySearch.h"

namespace fyn::productionrules {

namespace {

/** A change this near to the moment is what is asked about, in milliseconds. */
constexpr std::int64_t kAtTheMomentMs = 1000;

bool neverGivenUp() {
  return false;
}

/** The recording from beginning to end, as it was. */
struct WholeReplay {
  explicit WholeReplay(const WhyQuestion& question)
      : replay(question.recording, question.setup, std::nullopt) {
    replay.playToEnd([this](const RecordingEvent& event) { people.look(event, replay); });
  }

  PersonCourses people;
  MomentReplay replay;
};

/** The changes of the picture; the first picture of a stream is none. */
std::vector<TimeLine::Change> changesOf(const Measurement& measurement) {
  std::set<int> begun;
  std::vector<TimeLine::Change> changes;
  std::copy_if(measurement.timeLine.changes.begin(), measurement.timeLine.changes.end(),
               std::back_inserter(changes),
               [&begun](const TimeLine::Change& change) { return !begun.insert(change.stream).second; });
  return changes;
}

std::optional<TimeLine::Change> changeAskedFor(const WhyQuestion& question, const Measurement& measurement) {
  if (question.about == WhyAbout::Person) {
    return std::nullopt;
  }
  const auto away = [&question](const TimeLine::Change& change) { return std::abs(change.t - question.t); };
  const std::vector<TimeLine::Change> changes = changesOf(measurement);
  const auto nearest = std::min_element(changes.begin(), changes.end(),
                                        [&away](const auto& a, const auto& b) { return away(a) < away(b); });
  const bool isMeant =
      nearest != changes.end() && (question.about == WhyAbout::Change || away(*nearest) <= kAtTheMomentMs);
  return isMeant ? std::optional(*nearest) : std::nullopt;
}

std::vector<ShownPicture> shownBy(const RoomState& room, const Measurement& measurement) {
  std::vector<ShownPicture> pictures;
  for (const StreamPicture& picture : room.pictures) {
    ShownPicture shown{picture.stream, picture.type, 0, {}};
    for (const TimeLine::Change& change : measurement.timeLine.changes) {
      shown.since = change.stream == picture.stream ? change.t : shown.since;
    }
    for (const PersonState& person : room.persons) {
      if (roughVisibilityOf({picture}, person.heads) == Visibility::InView) {
        shown.people.push_back(person.id);
      }
    }
    pictures.push_back(std::move(shown));
  }
  return pictures;
}

bool isSeen(PersonFate fate) {
  return fate != PersonFate::NotThere && fate != PersonFate::NotDetected;
}

bool isMissing(const AskedPerson& person) {
  return person.stage &&
         (person.stage->fate == PersonFate::OffScreen || person.stage->fate == PersonFate::Cut);
}

AskedPerson personAt(std::int64_t id, const PersonCourses& people, std::int64_t t) {
  AskedPerson person{id, std::nullopt, std::nullopt};
  const auto course = people.courses().find(id);
  if (course == people.courses().end()) {
    return person;
  }
  const PersonCourses::Stage* const stage = stageAt(course->second, t);
  person.stage = stage == nullptr ? PersonCourses::Stage{} : *stage;
  const auto again = std::find_if(course->second.begin(), course->second.end(),
                                  [t](const auto& later) { return later.since > t && isSeen(later.fate); });
  if (!isSeen(person.stage->fate) && again != course->second.end()) {
    person.seenAgain = again->since;
  }
  return person;
}

/** The one who is asked about, or everybody who is there and not in the picture. */
std::vector<AskedPerson> personsMeant(const WhyQuestion& question, const PersonCourses& people) {
  if (question.about == WhyAbout::Person) {
    return {personAt(question.person, people, question.t)};
  }
  std::vector<AskedPerson> persons;
  for (const auto& [id, course] : people.courses()) {
    const AskedPerson person = personAt(id, people, question.t);
    if (isMissing(person) || person.stage->fate == PersonFate::NotDetected) {
      persons.push_back(person);
    }
  }
  return persons;
}

std::vector<WaitCount> countWaits(const std::vector<TimedDecision>& decisions, std::int64_t from) {
  std::map<std::string, WaitCount> counts;
  OpenWaits waits([&](const OpenWait& wait, WaitEnd end) {
    counts[wait.decision.key].dropped += end == WaitEnd::Dropped && wait.since >= from ? 1 : 0;
  });
  for (const TimedDecision& each : decisions) {
    const bool begins =
        each.decision.kind == DecisionKind::Pending || each.decision.kind == DecisionKind::ReframeWait;
    counts[each.decision.key].begun += begins && each.t >= from ? 1 : 0;
    waits.take(each.t, each.decision);
  }
  std::vector<WaitCount> rows;
  for (auto& [key, count] : counts) {
    if (!key.empty() && count.begun > 0) {
      rows.push_back({key, count.begun, count.dropped});
    }
  }
  return rows;
}

/** The latest decision up to `t` that changed the picture of `stream`, or of any. */
std::optional<TimedDecision> latestChange(const std::vector<TimedDecision>& decisions,
                                          std::optional<int> stream) {
  const auto found = std::find_if(decisions.rbegin(), decisions.rend(), [&](const TimedDecision& each) {
    return changesPicture(each.decision.kind) && (!stream || each.decision.streamId == *stream);
  });
  return found == decisions.rend() ? std::nullopt : std::optional(*found);
}

void describeMoment(WhyAnswer& answer, MomentReplay& replay) {
  const ServiceStateScope scope(replay.replay().state());
  if (ProductionRuleIPCService* const service = replay.replay().service()) {
    answer.mode = framingModeToString(service->trackingMode().getTrackingMode());
  }
  answer.pictures = shownBy(replay.room(), replay.measurement());
  for (const PersonState& person : replay.room().persons) {
    answer.present.push_back(person.id);
  }
  for (const auto& [place, wait] : replay.waits().running()) {
    answer.waits.push_back(wait);
  }
  answer.latest = latestChange(replay.decisions(), answer.changedStream);
}

/** The keys of what held the picture back, or brought the change. */
std::set<std::string> causesOf(const WhyAnswer& answer) {
  std::set<std::string> keys;
  if (answer.change) {
    keys.insert(answer.change->decision.key);
  } else if (!answer.changedStream) {
    for (const OpenWait& wait : answer.waits) {
      keys.insert(wait.decision.key);
    }
  }
  return keys;
}

std::set<std::string> waitKeys(const std::vector<TimedDecision>& decisions, std::int64_t until) {
  std::set<std::string> keys;
  for (const TimedDecision& each : decisions) {
    if (each.t <= until && !each.decision.key.empty()) {
      keys.insert(each.decision.key);
    }
  }
  return keys;
}

bool areAllShown(const std::vector<std::int64_t>& ids, const RoomState& room) {
  return std::all_of(ids.begin(), ids.end(), [&room](std::int64_t id) {
    return std::any_of(room.persons.begin(), room.persons.end(), [&](const PersonState& person) {
      return person.id == id && roughVisibilityOf(room.pictures, person.heads) == Visibility::InView;
    });
  });
}

bool isCalm(int stream, std::int64_t from, std::int64_t until, const Measurement& measurement) {
  const std::vector<TimeLine::Change> changes = changesOf(measurement);
  return std::none_of(changes.begin(), changes.end(), [&](const TimeLine::Change& change) {
    return change.stream == stream && change.t >= from && change.t <= until;
  });
}

/** When the room began to ask for the change: an earlier picture is no calmer one. */
std::int64_t beginOfChange(const WhyAnswer& answer) {
  return answer.t - (answer.change ? answer.change->decision.waitedMs : 0);
}

/** What would have to be different; nothing when nothing is wrong. */
std::optional<RemedyGoal> goalOf(const WhyQuestion& question, const WhyAnswer& answer) {
  RemedyGoal goal;
  goal.recording = question.recording;
  goal.setup = question.setup;
  goal.until = answer.t;
  if (answer.changedStream) {
    goal.until += kCalmMs;
    goal.isMet = [stream = *answer.changedStream, from = beginOfChange(answer),
                  until = goal.until](const MomentReplay& replay) {
      return isCalm(stream, from, until, replay.measurement());
    };
    return goal;
  }
  std::vector<std::int64_t> missing;
  for (const AskedPerson& person : answer.persons) {
    if (isMissing(person)) {
      missing.push_back(person.id);
    }
  }
  if (missing.empty()) {
    return std::nullopt;
  }
  goal.isMet = [missing](const MomentReplay& replay) { return areAllShown(missing, replay.room()); };
  return goal;
}

Measurement measureWith(const WhyQuestion& question, const KeyChange& change) {
  MomentReplay replay(question.recording, question.setup, change);
  replay.playToEnd({});
  return replay.measurement();
}

}  // namespace

WhyAnswer answerWhy(const WhyQuestion& question, PrbContext& context) {
  const WholeReplay whole(question);
  WhyAnswer answer;
  answer.recording = question.recording;
  answer.before = whole.replay.measurement();
  answer.knowsTruth = whole.people.knowsTruth();
  if (question.t > answer.before.timeLine.length) {
    throw UsageError(question.recording + " ends at " + clockText(answer.before.timeLine.length));
  }
  noteWithoutResults(question.recording, answer.before, context);
  answer.t = question.t;
  if (const std::optional<TimeLine::Change> change = changeAskedFor(question, answer.before)) {
    answer.t = change->t;
    answer.changedStream = change->stream;
  }

  MomentReplay moment(question.recording, question.setup, std::nullopt);
  moment.playUntil(answer.t, neverGivenUp);
  describeMoment(answer, moment);
  if (answer.changedStream) {
    answer.change = answer.latest && answer.latest->t == answer.t ? answer.latest : std::nullopt;
  } else if (question.about != WhyAbout::Change) {
    answer.persons = personsMeant(question, whole.people);
    if (!answer.persons.empty() && answer.persons.front().stage) {
      answer.counts = countWaits(moment.decisions(), answer.persons.front().stage->since);
    }
  }

  if (std::optional<RemedyGoal> goal = goalOf(question, answer)) {
    goal->configuration = moment.configuration();
    goal->waits = waitKeys(whole.replay.decisions(), goal->until);
    goal->causes = causesOf(answer);
    answer.isSearched = true;
    answer.remedies = findRemedies(*goal, context);
    if (!answer.remedies.empty()) {
      answer.after = measureWith(question, answer.remedies.front());
    }
  }
  return answer;
}

}  // namespace fyn::productionrules
