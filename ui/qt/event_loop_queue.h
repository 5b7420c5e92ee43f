/// The main queue of a program with windows: tasks run in the toolkit's event loop.
#pragma once

#include <QObject>
#include <atomic>

#include "platform/queues.h"

namespace kestrel {

/// However many tasks wait, the event loop is woken once and runs them all: one event a task would
/// cost ten times as much. Make it on the thread of the event loop.
class EventLoopQueue final : public QObject, public ManualQueue {
 protected:
  bool event(QEvent* event) override;

 private:
  void posted(Lock& lock) override;

  std::atomic<bool> woken_ = false;
};

}  // namespace kestrel
