#include "ui/qt/observe.h"

#include <utility>

namespace kestrel {
namespace {

/// A child of the widget, so that it goes when the widget goes.
class Observation final : public QObject {
 public:
  Observation(QObject* owner, Observers& observers, std::function<void()> changed)
      : QObject(owner), subscription_(observers.add(std::move(changed))) {}

 private:
  Observers::Subscription subscription_;
};

}  // namespace

void observe(QObject* owner, Observers& observers, std::function<void()> changed) {
  new Observation(owner, observers, std::move(changed));
}

}  // namespace kestrel
