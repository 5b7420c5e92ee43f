#include "foundation/library_error.h"

#include <utility>

namespace kestrel {
namespace {

std::string sentence(const std::string& file, TextPlace place, const std::string& problem,
                     const std::string& remedy) {
  std::string text = file;
  if (place.line)
    text += ", line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
  text += ": " + problem + ".";
  if (!remedy.empty()) text += " " + remedy;
  return text;
}

}  // namespace

LibraryError::LibraryError(std::string file_, TextPlace place_, std::string problem_,
                           std::string remedy_)
    : std::runtime_error(sentence(file_, place_, problem_, remedy_)),
      file(std::move(file_)),
      place(place_),
      problem(std::move(problem_)),
      remedy(std::move(remedy_)) {}

}  // namespace kestrel
