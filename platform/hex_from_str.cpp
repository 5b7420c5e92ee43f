#include "platform/hex_from_str.h"

#include "foundation/identifiers.h"
#include "platform/file_error.h"
#include "platform/programs.h"

namespace kestrel::TextSorter {

std::string hexFromStr(const std::string& decimal, ProgramRunner& programs) {
  ProgramCall call;
  call.program = "/usr/bin/printf";
  call.arguments = {"%lX", decimal};
  call.oneOutput = true;
  try {
    return programs.run(call).output;
  } catch (const FileError&) {
    const auto number = numberFromDecimal(decimal);
    return number ? decToHex(*number) : std::string();
  }
}

}  // namespace kestrel::TextSorter
