#pragma once

#include "layouts/cycle/BaseLayout.h"

namespace fyn::productionrules {

/** The layouts of all streams that a primary device sent at once. */
using SecondaryLayout = std::vector<std::shared_ptr<Layout>>;

/** Shows what a primary device decides; it never builds a layout itself. */
class BaseSecondaryLayout : public BaseLayout {
 public:
  const char* getTag() const override;
  bool applyingLayout(const std::shared_ptr<MLData>& mlData) override;

  /** Frames anew by itself only while the configuration allows it. */
  bool updateLayoutFraming() override;

  /** The size that the primary device sent with the frame. */
  Dimension getImageSize(const Frame& frame) override;

  /** For hosts whose engines take all streams at once; false here, and nothing changes. */
  virtual bool applyLayout(const SecondaryLayout& layout);

 protected:
  /**
   * For engines that must not show nothing: whether the layout is to be refused because it has frames, none
   * of them came with a view and this device can make none. Says so in the log. Layouts that the base refuses
   * by itself are left to it.
   */
  bool refusesEmptyPicture(const std::shared_ptr<Layout>& layout);

 private:
  bool showsNothing(Frame frame);
};

}  // namespace fyn::productionrules
