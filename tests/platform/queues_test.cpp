#include "platform/queues.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace kestrel {
namespace {

/// Writes down what reaches it.
struct Counter final : Advanceable {
  explicit Counter(std::string name_ = "", std::string* story_ = nullptr)
      : name(std::move(name_)), story(story_) {}
  void advance(double by, std::uint64_t times) override {
    total += by;
    count += times;
    if (story) *story += name + std::to_string(times) + " ";
  }
  std::string name;
  std::string* story;
  double total = 0;
  std::uint64_t count = 0;
};

TEST(ManualQueue, MergesOnlyNeighboursOfOneTarget) {
  std::string story;
  Counter a("a", &story);
  Counter b("b", &story);
  ManualQueue queue;
  for (int i = 0; i < 3; ++i) queue.postAdvance(a, 0.5);
  queue.postAdvance(b, 1);
  queue.postAdvance(a, 1);
  queue.post([&] {
    story += "task ";
    queue.postAdvance(a, 1);  // waits behind what is there
  });
  queue.postAdvance(a, 1);
  queue.postAdvance(a, 1);
  EXPECT_EQ(queue.waiting(), 5U);
  EXPECT_EQ(story, "");
  EXPECT_EQ(queue.drain(), 5U);
  EXPECT_EQ(story, "a3 b1 a1 task a3 ");
  EXPECT_EQ(a.total, 5.5);
}

TEST(InlineQueue, RunsAtOnceAndNestedPostsAfterwards) {
  InlineQueue queue;
  std::string story;
  queue.post([&] {
    queue.post([&] { story += "inner"; });
    story += "outer ";
  });
  EXPECT_EQ(story, "outer inner");
  Counter counter;
  queue.postAdvance(counter, 2);
  EXPECT_EQ(counter.total, 2);
}

TEST(Queues, WhatATaskHeldMayPostWhenItGoes) {
  struct Poster {
    TaskQueue& queue;
    int& ran;
    ~Poster() {
      queue.post([&ran = ran] { ++ran; });
    }
  };
  int ran = 0;
  ManualQueue manual;
  InlineQueue atOnce;
  WorkerQueue worker;
  for (TaskQueue* queue : {static_cast<TaskQueue*>(&manual), static_cast<TaskQueue*>(&atOnce),
                           static_cast<TaskQueue*>(&worker)})
    queue->post([held = std::shared_ptr<Poster>(new Poster{*queue, ran})] {});
  worker.waitUntilIdle();
  manual.drain();
  EXPECT_EQ(ran, 3);
}

TEST(WorkerQueue, KeepsEachThreadsOrderAndAllCountsOnAThreadOfItsOwn) {
  constexpr int posters = 4;
  constexpr int perPoster = 20'000;
  std::vector<std::vector<int>> seen(posters);
  std::set<std::thread::id> ran;
  Counter counter;
  {
    WorkerQueue queue;
    std::vector<std::jthread> threads;
    for (int poster = 0; poster < posters; ++poster)
      threads.emplace_back([&, poster] {
        for (int i = 0; i < perPoster; ++i) {
          queue.postAdvance(counter, 1);
          if (i % 100 != 0) continue;
          queue.post([&seen, &ran, poster, i] {
            seen[poster].push_back(i);
            ran.insert(std::this_thread::get_id());
          });
        }
      });
    threads.clear();
    queue.waitUntilIdle();
    EXPECT_EQ(counter.count, std::uint64_t{posters} * perPoster);
    queue.post([&queue, &counter] { queue.postAdvance(counter, 1); });
  }  // what waits is still run
  EXPECT_EQ(counter.total, posters * perPoster + 1);
  EXPECT_EQ(ran.size(), 1U);
  EXPECT_FALSE(ran.contains(std::this_thread::get_id()));
  for (const auto& numbers : seen) {
    EXPECT_EQ(numbers.size(), 200U);
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  }
}

}  // namespace
}  // namespace kestrel
