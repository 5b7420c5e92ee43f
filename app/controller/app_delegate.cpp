#include "app/controller/app_delegate.h"

#include <exception>
#include <utility>

#include "foundation/library_error.h"
#include "history/history.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {

AppDelegate::AppDelegate(Process& process, TaskQueue& worker, Opener opener)
    : process_(process), worker_(worker), opener_(std::move(opener)) {
  recallLibraries();
  // What the menu shows before there is a library.
  process_.state<PlaylistWindowReferences>().mainPlaylistPopup.addItem({});
  playlists_.awakeFromNib();
  process_.takeSnapshot = [this] { takeSnapshot(); };
  process_.getDupesAtLaunch = [this] { whenIdle([this] { findDuplicates(); }); };
}

void AppDelegate::begin(Activity activity) {
  activity_ = activity;
  stopLearning();
  observers.notify();
}

void AppDelegate::end() {
  activity_ = Activity::idle;
  auto actions = std::exchange(whenIdle_, {});
  for (auto& action : actions) whenIdle(std::move(action));
  if (!isBusy() && std::exchange(keeperPassWanted_, false)) startKeeperPass();
  observers.notify();
  learn();
}

void AppDelegate::whenIdle(std::function<void()> action) {
  if (isBusy())
    whenIdle_.push_back(std::move(action));
  else
    action();
}

void AppDelegate::whenIdleHere(std::function<void()> action, std::function<void()> otherwise) {
  whenIdle([this, here = application_, action = std::move(action),
            otherwise = std::move(otherwise)] { application_ == here ? action() : otherwise(); });
}

void AppDelegate::start(Activity activity, std::function<void()> work,
                        std::function<void(Failure)> done) {
  // Whatever was stopped before, this one goes on.
  if (activity != Activity::search)
    process_.with.preferences.set(settings::cancelGetDupes, std::int64_t{0});
  begin(activity);
  post(std::move(work), std::move(done));
}

void AppDelegate::post(std::function<void()> work, std::function<void(Failure)> done) {
  worker_.post([this, work = std::move(work), done = std::move(done)] {
    Failure failure;
    try {
      work();
    } catch (const HistoryError& error) {
      failure = {error.message, error.unreadable ? error.file : std::string()};
    } catch (const PasswordError& error) {
      failure = {error.problem, {}, error.file};
    } catch (const std::bad_alloc&) {
      failure = {Message::tr("There is not enough memory. Close other programs and try again."),
                 {}};
    } catch (const std::exception& error) {
      failure = {messageOf(error), {}};
    }
    process_.with.mainQueue.post([done, failure = std::move(failure)] { done(failure); });
  });
}

void AppDelegate::fail(const Message& message, const Message& problem) {
  process_.with.log.line(message.english() + ": " + problem.english());
  alerts.show({message, problem, {Message::tr("OK")}});
}

bool AppDelegate::run(std::function<void()> work, std::function<void()> done,
                      std::function<void(const TaskFailure&)> failed) {
  if (isBusy()) return false;
  start(Activity::other, std::move(work),
        [this, done = std::move(done), failed = std::move(failed)](const Failure& failure) {
          end();
          if (!failure)
            done();
          else if (failed)
            failed(*failure);
          else
            fail(Message::tr("That did not work."), failure->problem);
        });
  return true;
}

bool AppDelegate::ask(std::function<void()> question, std::function<void()> answered) {
  if (isBusy() || !application_) return false;
  worker_.post([this, question = std::move(question), answered = std::move(answered)] {
    try {
      question();
      process_.with.mainQueue.post(answered);
    } catch (const std::exception& error) {
      process_.with.log.line(error.what());
    }
  });
  return true;
}

}  // namespace kestrel
