#include "ui/models/view_models.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>

#include "platform/queues.h"
#include "ui/models/alert.h"
#include "ui/models/observers.h"

namespace kestrel {
namespace {

TEST(Observers, MayComeAndGoDuringANotification) {
  Observers observers;
  std::string story;
  std::optional<Observers::Subscription> first;
  std::optional<Observers::Subscription> second;
  std::optional<Observers::Subscription> late;
  first = observers.add([&] {
    story += "first ";
    first.reset();
    second.reset();
    late = observers.add([&] { story += "late "; });
  });
  second = observers.add([&] { story += "second "; });
  const auto third = observers.add([&] { story += "third "; });
  observers.notify();
  EXPECT_EQ(story, "first third ");
  observers.notify();
  EXPECT_EQ(story, "first third third late ");
}

TEST(Observers, MayDestroyTheModelAndOutliveIt) {
  auto bar = std::make_unique<ProgressBar>();
  int calls = 0;
  const auto destroyer = bar->observers.add([&] { bar.reset(); });
  const auto other = bar->observers.add([&] { ++calls; });
  bar->setValue(1);
  EXPECT_FALSE(bar);
}

TEST(ProgressBar, KeepsWhatItIsToldAndCountsAdvances) {
  ProgressBar bar;
  int notified = 0;
  const auto subscription = bar.observers.add([&] { ++notified; });
  bar.setIndeterminate(false);
  bar.setMaximum(0);
  bar.setHidden(false);
  bar.setValue(5);
  ManualQueue queue;
  for (int i = 0; i < 1000; ++i) queue.postAdvance(bar, 1);
  EXPECT_EQ(bar.value(), 5);
  EXPECT_EQ(queue.drain(), 1U);
  EXPECT_EQ(bar.value(), 1005);
  EXPECT_EQ(bar.advances(), 1000U);
  EXPECT_EQ(notified, 3);
}

TEST(Alert, ButtonsStandInTheOrderThatCallersCountOn) {
  const auto texts = [](const Alert& alert) {
    std::string all = alert.message.english() + ", " + alert.informativeText.english() + ":";
    for (const Message& title : alert.buttons) all += " " + title.english();
    return all;
  };
  using TextSorter::alertWithMessage;
  const auto text = Message::verbatim;
  const Message m = text("M"), a = text("A"), b = text("B"), i = text("I");
  EXPECT_EQ(texts(alertWithMessage(m, a, b, text("C"), i)), "M, I: A C B");
  EXPECT_EQ(texts(alertWithMessage(m, a, b, std::nullopt, {})), "M, : A B");
  EXPECT_EQ(texts(alertWithMessage(m, a, std::nullopt, std::nullopt, i)), "M, I: A");
}

}  // namespace
}  // namespace kestrel
