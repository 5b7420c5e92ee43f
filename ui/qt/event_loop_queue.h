/// The main queue of a program with windows: tasks run in the toolkit's event loop.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <atomic>

#include "platform/queues.h"

namespace kestrel {

/// However many tasks wait, the event loop is woken once and runs them all: one event a task would
/// cost ten times as much. Make it on the thread of the event loop.
class EventLoopQueue final : public QObject, public ManualQueue {
 protected:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    // Before draining: what is posted from now on may come too late for this round.
    woken_ = false;
    drain();
    return true;
  }

 private:
  void posted(Lock& lock) override {
    lock.unlock();
    if (!woken_.exchange(true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

  std::atomic<bool> woken_ = false;
};

}  // namespace kestrel
