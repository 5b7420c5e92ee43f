/// A trash that only writes down what it is given, for tests.
#pragma once

#include <map>

#include "platform/file_error.h"
#include "platform/trash.h"

namespace kestrel {

class RecordingTrash final : public Trash {
 public:
  std::vector<TrashResult> recycle(std::span<const std::string> paths) override {
    std::vector<TrashResult> results;
    for (const std::string& path : paths) {
      recycled.push_back(path);
      if (const auto problem = problems.find(path); problem != problems.end())
        results.push_back({path, std::nullopt, Message::verbatim(problem->second)});
      else
        results.push_back({path, TrashedItem{path, "/trash" + path, "/info" + path}, {}});
    }
    return results;
  }
  void restore(const TrashedItem& item) override {
    if (problems.contains(item.originalPath))
      throw FileError(item.originalPath, Message::verbatim(problems[item.originalPath]), {});
    restored.push_back(item.originalPath);
  }

  std::vector<std::string> recycled;  ///< every path, in order, those with a problem included
  std::vector<std::string> restored;
  std::map<std::string, std::string> problems;  ///< what is to fail, by path
};

}  // namespace kestrel
