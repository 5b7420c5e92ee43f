#include "platform/file_users.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "platform/descriptor.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel {
namespace {

TEST(FileUsers, AreOtherProgramsThatHaveItOpen) {
  const TemporaryFolder folder;
  const std::string path = folder.write("file", "x");
  const Descriptor own(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_FALSE(isOpenElsewhere(path));
  EXPECT_FALSE(isOpenElsewhere(folder / "none"));
  // What is asked by a child has its parent for another program.
  EXPECT_EQ(inChild([&] { ::_exit(isOpenElsewhere(path) ? 7 : 1); }), 7 << 8);
}

}  // namespace
}  // namespace kestrel
