#include "cli/carry.h"

#include <ostream>

#include "cli/text_table.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

std::string wordsWithCommas(const std::vector<TrackValue>& values) {
  std::string words;
  for (const TrackValue value : values)
    words.append(words.empty() ? "" : ",").append(nameOf(trackValueNames, value));
  return words;
}

}  // namespace

CLI::Option* addCarryOption(CLI::App& command, std::vector<std::string>& words) {
  return command
      .add_option("--carry", words,
                  "Give the keeper what the copies that go have:\n"
                  "plays (added up), rating (the highest), added\n"
                  "(the earliest date), comments (where it has none)")
      ->option_text("WHAT[,WHAT...]")
      ->delimiter(',')
      ->allow_extra_args(false);
}

TrackValueSet carriedValues(const std::vector<std::string>& words) {
  TrackValueSet values;
  for (const std::string& word : words) {
    const auto value = valueNamed(trackValueNames, word);
    if (!value)
      throw UsageError("--carry: \"" + word +
                       "\" is none of: " + wordsWithCommas(TrackValueSet::all().list()));
    values.add(*value);
  }
  return values;
}

void checkCarry(TrackValueSet which, RunKind kind, const Capabilities& can) {
  const Message why = whyNotCarried(which, kind, can);
  if (why.empty()) return;
  const TrackValueSet cannot = which.without(can.takesValues);
  throw UsageError("--carry " + wordsWithCommas((cannot.empty() ? which : cannot).list()) + ": " +
                   why.english());
}

void writeCarried(std::ostream& out, const Plan& plan, const TrackStore& library) {
  if (plan.carries.empty()) return;
  const std::vector<CarriedValues> carried = carriedBy(plan);
  for (const auto& [planned, after] : carried) {
    const CopyTexts texts = textsOf(library, planned->keeper);
    out << "Would give the kept copy of " << printable(texts.song) << " (group " << planned->group
        << ") " << printable(gainOf(plan.carries, planned->before, after).english()) << ".\n";
  }
  if (carried.empty())
    out << "No kept copy would be given anything.\n";
  else if (carried.size() > 1)
    out << "In all: " << gainOf(plan, carried).english() << ", for " << carried.size()
        << " kept copies.\n";
}

}  // namespace kestrel
