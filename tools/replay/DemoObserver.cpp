#include "tools/replay/DemoObserver.h"

#include <ostream>

#include "platform/Topics.h"
#include "tools/recording/DecisionSentence.h"

namespace fyn::productionrules {

namespace {

std::string peopleText(unsigned persons) {
  return ", " + std::to_string(persons) + (persons == 1 ? " person" : " people");
}

// Who is in a picture that does not show everybody.
std::string shownText(const LayoutDecision& decision) {
  const bool isOfSome = decision.to != FramingType::GROUP && decision.to != FramingType::ROOM;
  if (decision.people.empty() || !isOfSome) {
    return {};
  }
  std::string text;
  for (const std::int64_t person : decision.people) {
    text += (text.empty() ? ", shows " : ", ") + std::to_string(person);
  }
  return text;
}

}  // namespace

void DemoObserver::onPublish(const std::string& topic, const std::string& payload) {
  if (topic == topics::kScene) {
    mScenes << payload << '\n';
    ++mScenesWritten;
  } else if (topic == topics::kTrackingMode) {
    mLines << clockText(mReplay->now()) << "  framing mode is now " << payload << std::endl;
  }
}

void DemoObserver::onDecision(const LayoutDecision& decision) {
  if (!changesPicture(decision.kind)) {
    return;
  }
  ++(decision.kind == DecisionKind::Reframed ? mReframes : mLayoutChanges);
  const std::shared_ptr<BaseLayout> engine = mReplay->service()->trackingMode().getFramingLayout();
  const unsigned persons = engine != nullptr ? engine->getPeopleCount() : 0;
  mLines << clockText(mReplay->now()) << "  " << decisionSentence(decision) << peopleText(persons)
         << shownText(decision) << std::endl;
}

std::string DemoObserver::summary() {
  return "Played " + clockText(mReplay->now()) + " of meeting: " + std::to_string(mLayoutChanges) +
         " new pictures, " + std::to_string(mReframes) + " reframes, " + std::to_string(mScenesWritten) +
         " scenes.";
}

}  // namespace fyn::productionrules
