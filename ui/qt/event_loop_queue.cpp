#include "ui/qt/event_loop_queue.h"

#include <QCoreApplication>
#include <QEvent>

namespace kestrel {

void EventLoopQueue::posted(Lock& lock) {
  lock.unlock();
  if (!woken_.exchange(true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool EventLoopQueue::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  // Before draining: what is posted from now on may come too late for this round.
  woken_ = false;
  drain();
  return true;
}

}  // namespace kestrel
