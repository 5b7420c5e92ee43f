#include "foundation/message.h"

#include <gtest/gtest.h>
#include <vector>

namespace kestrel {
namespace {

Message tracksIn(std::int64_t count, const std::string& name) {
  return Message::tr("%Ln tracks in %1", "%Ln track in %1", count).arg(inQuotes(name));
}

TEST(Message, IsFilledOnceAndInEnglish) {
  const std::vector<std::pair<Message, std::string>> cases = {
      {Message(), ""},
      {Message::verbatim("100 %1"), "100 %1"},
      {tracksIn(1, "a"), "1 track in \"a\""},
      {tracksIn(12345, "a"), "12345 tracks in \"a\""},
      // What fills a place may look like a place.
      {Message::tr("%2 for %1 and %2").arg("%2").arg(tracksIn(0, "%Ln")),
       "0 tracks in \"%Ln\" for %2 and 0 tracks in \"%Ln\""},
      {Message::tr("%1 of 9 %, %3 %").arg(-7), "-7 of 9 %, %3 %"},
      {joined(Message(), ended(Message::tr("no"))), "no."},
      {joined(ended(ended(Message::tr("no"))), tracksIn(2, "b")), "no. 2 tracks in \"b\""},
  };
  for (const auto& [message, english] : cases) {
    EXPECT_EQ(message.english(), english);
    EXPECT_EQ(message, Message::verbatim(english));
    EXPECT_EQ(message.empty(), english.empty());
  }
}

TEST(Message, ListsSomeAndCountsTheRest) {
  std::vector<Message> names;
  std::string told;
  for (const char* name : {"a", "b", "c"}) {
    names.push_back(Message::verbatim(name));
    told += listed(names).english() + "; " + listed(names, 9).english() + "\n";
  }
  EXPECT_EQ(told, "a; a and 9 more\na and b; a, b and 9 more\na, b and c; a, b, c and 9 more\n");
}

}  // namespace
}  // namespace kestrel
