// The controller's part that learns about the groups of a result in the background.

#include <utility>

#include "app/controller/app_delegate.h"
#include "platform/log.h"
#include "platform/queues.h"
#include "ui/dupe_search.h"
#include "ui/process.h"

namespace kestrel {

void AppDelegate::stopLearning() {
  if (learning_) learning_->cancelled = true;
}

void AppDelegate::waitForLearning() {
  stopLearning();
  if (learning_) const std::lock_guard lock(learning_->atRows);
}

void AppDelegate::forgetKnowledge() {
  waitForLearning();
  learning_ = nullptr;
  knowledgeDue_ = false;
  if (!std::exchange(knowledge_, nullptr)) return;
  knowledgeObservers.notify();
}

void AppDelegate::learn() {
  if (!knowledgeDue_ || isBusy() || situation_ != Situation::result) return;
  knowledgeDue_ = false;
  stopLearning();
  const auto learning = learning_ = std::make_shared<Learning>();
  const auto view = std::make_shared<ResultInView>();
  view->rows = content();
  view->kept.reserve(view->rows.size());
  for (std::uint32_t row = 0; row < view->rows.size(); ++row)
    view->kept.push_back(groups_.isKeeper(row));
  view->picked = groups_.picked();
  view->grouping = groupingOptions(process_.with.preferences);
  view->settings = passSettings_;
  worker_.post([this, learning, view] {
    const std::lock_guard lock(learning->atRows);
    const auto cancelled = [&] { return learning->cancelled.load(); };
    try {
      if (cancelled()) return finishLearning(learning, nullptr, true);
      auto known = std::make_shared<GroupKnowledge>();
      if (!known->findDoubts(*view, cancelled)) return finishLearning(learning, nullptr, true);
      finishLearning(learning, known, false);
      known = std::make_shared<GroupKnowledge>(*known);
      view->facts = keeperFacts();
      const bool whole = known->findAgreements(*view, cancelled);
      finishLearning(learning, whole ? known : nullptr, true);
    } catch (const std::exception& error) {
      process_.with.log.line(error.what());
    }
  });
}

void AppDelegate::showAgreements() {
  for (ResultTrack& row : rowsOf(process_.textSorter.window.bigArrayController)) {
    // What the user has chosen asks no rule.
    const GroupAgreement agreement =
        groups_.isPicked(row.tGroupID) ? GroupAgreement{} : knowledge_->agreementOf(row.tGroupID);
    row.rulesThatAgree = static_cast<std::uint8_t>(agreement.agree);
    row.rulesThatChoose = static_cast<std::uint8_t>(agreement.of);
  }
}

void AppDelegate::finishLearning(const std::shared_ptr<Learning>& learning,
                                 std::shared_ptr<const GroupKnowledge> known, bool isLast) {
  process_.with.mainQueue.post([this, learning, known = std::move(known), isLast] {
    // Meanwhile there may be other groups.
    if (learning != learning_) return;
    if (known) {
      knowledge_ = known;
      if (isLast) showAgreements();
      knowledgeObservers.notify();
    }
    if (!isLast) return;
    learning_ = nullptr;
    // Stopped by a task that needed the worker: from the start once it is over.
    if (known) return;
    knowledgeDue_ = true;
    learn();
  });
}

}  // namespace kestrel
