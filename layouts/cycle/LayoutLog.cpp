#include "layouts/cycle/LayoutLog.h"

#include "geometry/LayoutDescription.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "BaseLayout";

}  // namespace

void logLayout(const std::shared_ptr<Layout>& layout, const std::string& prefix, const PeopleMap& people) {
  if (layout == nullptr) {
    PRB_LOGW(kTag, "%s %s layout is null", "printLayoutToLog", prefix.c_str());
    return;
  }
  PRB_LOGI(kTag, "%s, %s %s", "printLayoutToLog", prefix.c_str(),
           convertLayoutToString(layout, people).c_str());
}

void logFrameViews(const std::vector<Frame>& frames) {
  for (const Frame& frame : frames) {
    PRB_LOGI(kTag, "%s FrameView [%d, %d, %d, %d] ", "printFrameViews", frame.source.left, frame.source.top,
             frame.source.right, frame.source.bottom);
  }
}

void logFrameHeads(const Layout& layout, const PeopleMap& people) {
  PRB_LOGI(kTag, "%s() DUMP layoutType %d", "printFrameHeads", static_cast<int>(layout.layoutType));
  for (const Frame& frame : layout.frames) {
    for (const std::int64_t id : frame.fynHeads) {
      const auto person = people.find(id);
      const Head* const head =
          person == people.end() ? nullptr : person->second->findHead(FynHead::kNoCamera);
      if (head == nullptr) {
        PRB_LOGI(kTag, "%s(): People left", "printFrameHeads");
        continue;
      }
      PRB_LOGI(kTag, "%s FrameHead [%d, %d, %d, %d] ", "printFrameHeads", head->bbox.left, head->bbox.top,
               head->bbox.right, head->bbox.bottom);
    }
  }
}

}  // namespace fyn::productionrules
