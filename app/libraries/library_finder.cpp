#include "app/libraries/library_finder.h"

#include <chrono>
#include <utility>

#include "musicapp/applications.h"

namespace kestrel {
namespace {

// Most libraries are read in less; the first reading of a folder takes longer.
constexpr std::chrono::seconds patience(3);

}  // namespace

LibraryFinder::LibraryFinder(FileService& files, Clock& clock, TaskQueue& mainQueue)
    : files_(files), clock_(clock), mainQueue_(mainQueue) {}

LibraryFinder::~LibraryFinder() {
  stop();
  worker_.waitUntilIdle();
}

void LibraryFinder::look() {
  if (std::exchange(isLooking_, true)) return;
  isStopped_ = false;
  worker_.post([this] { lookAtAll(); });
}

void LibraryFinder::stop() { isStopped_ = true; }

void LibraryFinder::tell(std::function<void()> news) {
  mainQueue_.post([this, lives = std::weak_ptr(lives_), news = std::move(news)] {
    if (lives.expired()) return;
    news();
    observers.notify();
  });
}

void LibraryFinder::lookAtAll() {
  ApplicationServices services{files_, log_, random_, clock_};
  services.watch.cancelled = [this] { return isStopped_.load(); };
  std::vector<Found> places;
  for (const Application& application : applications())
    for (const std::string& address : application.found(services))
      places.push_back({{address, &application, {}, {}, {}}, false});
  tell([this, places] {
    // What is known of a place counts until more is known.
    std::vector<Found> before = std::exchange(found_, places);
    for (Found& place : found_)
      for (Found& known : before)
        if (known.library.address == place.library.address) place = std::move(known);
  });
  for (std::size_t i = 0; i < places.size() && !isStopped_; ++i) {
    const FoundLibrary& place = places[i].library;
    FoundLibrary seen = lookAtLibrary(place.address, *place.application, services, patience);
    if (!isStopped_) tell([this, i, seen = std::move(seen)] { found_[i] = {seen, true}; });
  }
  tell([this] { isLooking_ = false; });
}

}  // namespace kestrel
