#include "ui/process.h"

#include <stdexcept>
#include <utility>

#include "musicapp/media_library.h"
#include "musicapp/requests.h"

namespace kestrel {
namespace {

// Set by the thread that makes the process before any other uses it.
Process* current = nullptr;

}  // namespace

void MainWindowReferences::showWaitingSheet() {
  ProgressBar& bar = mainLaunchProgressBar;
  bar.setIndeterminate(true);
  bar.setMinimum(0);
  bar.setValue(0);
  bar.setHidden(false);
  mainLaunchProgressStatus.setText(Message::tr("One moment..."));
  mainLaunchProgressWindow.open(mainWindow);
  bar.startAnimation();
}

Process::Process(Collaborators collaborators)
    : with(std::move(collaborators)), previous_(std::exchange(current, this)) {}

Process::~Process() { current = previous_; }

void* Process::stateOf(std::type_index type, std::shared_ptr<void> (*make)()) {
  const std::scoped_lock lock(statesMutex_);
  std::shared_ptr<void>& state = states_[type];
  if (!state) state = make();
  return state.get();
}

Process& process() {
  if (!current) throw std::logic_error("no Process is alive");
  return *current;
}

void runInBackground(std::function<void()> task, std::exception_ptr& failure) {
  TaskQueue* queue = process().with.backgroundQueue;
  if (!queue) return task();
  queue->post([task = std::move(task), &failure] {
    failure = nullptr;
    try {
      task();
    } catch (...) {
      failure = std::current_exception();
    }
  });
}

void revealInBackground(std::string hexpid, std::exception_ptr& failure) {
  runInBackground(
      [pid = std::move(hexpid)] {
        const Collaborators& with = process().with;
        request::revealPlaylist(with.application, with.log, pid);
      },
      failure);
}

}  // namespace kestrel
