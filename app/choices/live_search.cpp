#include "app/choices/live_search.h"

#include <QPointer>
#include <QTimer>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "ui/process.h"

namespace kestrel {
namespace {

constexpr std::chrono::milliseconds quick(500);
constexpr std::chrono::milliseconds pauseAfterTyping(700);

}  // namespace

LiveSearch::LiveSearch(AppDelegate& delegate) : delegate_(delegate), pause_(new QTimer(this)) {
  pause_->setSingleShot(true);
  connect(pause_, &QTimer::timeout, this, &LiveSearch::search);
}

void LiveSearch::criteriaChanged() {
  if (!delegate_.hasSearched()) return;
  // What is searched now is not what is wanted any more.
  if (delegate_.activity() == Activity::search) delegate_.cancel();
  // Even where it is quick, several changes of one step of the event loop are one.
  pause_->start(delegate_.lastSearchTime() < quick ? std::chrono::milliseconds(0)
                                                   : pauseAfterTyping);
}

void LiveSearch::search() {
  if (isWaiting_) return;
  isWaiting_ = delegate_.isBusy();
  delegate_.whenIdle([this, alive = QPointer<LiveSearch>(this)] {
    if (!alive) return;
    isWaiting_ = false;
    if (!searchCriteria(delegate_.process().with.preferences).empty()) delegate_.findDuplicates();
  });
}

}  // namespace kestrel
