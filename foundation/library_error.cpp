#include "foundation/library_error.h"

#include <utility>

namespace kestrel {
namespace {

Message whole(const std::string& file, TextPlace place, const Message& problem,
              const Message& remedy) {
  Message sentence = place.line ? Message::tr("%1, line %2, column %3: %4.")
                                      .arg(file)
                                      .arg(place.line)
                                      .arg(place.column)
                                      .arg(problem)
                                : Message::tr("%1: %2.").arg(file).arg(problem);
  return joined(std::move(sentence), remedy);
}

}  // namespace

LibraryError::LibraryError(std::string file_, TextPlace place_, Message problem_, Message remedy_)
    : MessageError(whole(file_, place_, problem_, remedy_)),
      file(std::move(file_)),
      place(place_),
      problem(std::move(problem_)),
      remedy(std::move(remedy_)) {}

}  // namespace kestrel
