// A random walk through the wizard on the bare controls.
#include "tests/support/walker.h"

namespace plovix {
namespace {

using namespace testing_support;

class WalkedWizard final : public Walked {
 public:
  explicit WalkedWizard(Scene& scene) : scene_(scene) {}
  void Open(const TaskRecord& task, const Entries& entries, const std::string& first) override {
    wizard_ = std::make_unique<VeloWiz>(scene_.Parts(), task, entries);
    hand_ = std::make_unique<UserHand>(wizard_->User());
    wizard_->Open(first);
  }
  VeloWiz& Wizard() override { return *wizard_; }
  Hand& UsersHand() override { return *hand_; }
  bool Press(Button button) override {
    constexpr std::array verbs{&VeloWiz::Back, &VeloWiz::Next, &VeloWiz::Finish, &VeloWiz::Cancel};
    return (wizard_.get()->*verbs.at(static_cast<std::size_t>(button)))();
  }

 private:
  Scene& scene_;
  std::unique_ptr<VeloWiz> wizard_;
  std::unique_ptr<Hand> hand_;
};

TEST(Walk, ThroughTheWizard) {
  Scene scene;
  WalkedWizard wizard(scene);
  Walker(scene, scene.storage, wizard).Walk(100'000);
}

}  // namespace
}  // namespace plovix
