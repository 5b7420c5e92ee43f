#include "ui/qt/event_loop_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

namespace kestrel {

void EventLoopQueue::post(std::function<void()> task) {
  tasks_.post(std::move(task));
  wake();
}

void EventLoopQueue::postAdvance(Advanceable& target, double by) {
  tasks_.postAdvance(target, by);
  wake();
}

void EventLoopQueue::wake() {
  if (!woken_.exchange(true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool EventLoopQueue::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  // Before draining: what is posted from now on may come too late for this round.
  woken_ = false;
  tasks_.drain();
  return true;
}

}  // namespace kestrel
