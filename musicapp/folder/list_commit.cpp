#include "musicapp/folder/list_commit.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "musicapp/folder/folder_walk.h"
#include "musicapp/library_files.h"
#include "platform/atomic_write.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;
using std::size_t;
using std::string_view;

/// One file on its way.
class ListCommit {
 public:
  ListCommit(ListChange& change, FileService& files, Log& log, const CommitOptions& options)
      : change_(change),
        files_(files),
        options_(options),
        target_(change.expected ? realPathOf(change.path) : change.path),
        prefix_(".kestrel-" + libraryHash(target_) + "-"),
        successor_(target_, prefix_) {
    if (change.expected) clearLeftoversOf(target_, files, log);
  }
  ListCommit(const ListCommit&) = delete;
  ListCommit& operator=(const ListCommit&) = delete;

  void prepare() {
    step(CommitStep::check);
    checkUnchanged();
    if (change_.before && files_.readAll(target_) != change_.before)
      throwChangedMeanwhile(change_.path);
    if (change_.expected) {
      backups_.emplace(files_, target_, target_.substr(target_.rfind('.')));
      backups_->removeUnreplaced();
      checkWritable(target_);
    }
    if (change_.after) {
      step(CommitStep::create);
      successor_.create();
      step(CommitStep::write);
      successor_.write(*change_.after);
      step(CommitStep::protect);
      change_.expected ? successor_.takeOver() : successor_.openLikeFolder();
      step(CommitStep::sync);
      successor_.sync();
      successor_.close();
    }
    step(CommitStep::backUp);
    if (backups_) backup_ = backups_->add();
  }

  void takeEffect() {
    step(CommitStep::checkAgain);
    checkUnchanged();
    step(CommitStep::replace);
    if (!change_.after) {
      removed_ = target_.substr(0, target_.rfind('/') + 1) + prefix_ + "removed";
      files_.rename(target_, removed_);
    } else if (!change_.expected) {
      successor_.place();
    } else if (!successor_.exchange()) {
      successor_.replace();
    }
    hasEffect_ = true;
    step(CommitStep::compare);
    if (change_.after && change_.expected && !successor_.path().empty() &&
        files_.entryStatus(successor_.path()) != change_.expected)
      throwChangedMeanwhile(target_);
  }

  /// As if nothing had been done.
  void putBack() noexcept {
    if (hasEffect_ && !change_.after)
      std::rename(removed_.c_str(), target_.c_str());
    else if (hasEffect_ && !change_.expected)
      ::unlink(target_.c_str());
    else if (hasEffect_ && !successor_.path().empty())
      successor_.putBack();
    else if (hasEffect_)
      restore();
    if (!backup_.empty()) ::unlink(backup_.c_str());
  }

  void finish(Log& log) {
    if (change_.after) change_.status = successor_.status();
    try {
      step(CommitStep::syncFolder);
      if (!removed_.empty()) files_.remove(removed_);
      if (const int code = successor_.syncFolder())
        throw FileError::fromCode(
            target_, Message::tr("was written, but may not outlast a power cut"), code);
      step(CommitStep::prune);
      if (backups_) backups_->prune(options_.keptBackups);
    } catch (const FileError& error) {
      log.line(error.what());
    }
  }

 private:
  /// Where two files cannot change places.
  void restore() noexcept {
    try {
      files_.writeAtomically(target_, *change_.before);
    } catch (const FileError&) {
      backup_.clear();  // which has it
    }
  }
  void step(CommitStep which) const {
    if (options_.onStep) options_.onStep(which);
  }
  void checkUnchanged() const {
    if (files_.status(target_) != change_.expected) throwChangedMeanwhile(change_.path);
  }

  ListChange& change_;
  FileService& files_;
  const CommitOptions& options_;
  std::string target_, prefix_;
  SuccessorFile successor_;
  std::optional<LibraryBackups> backups_;
  std::string backup_;   ///< to be removed if nothing comes of it
  std::string removed_;  ///< where a file is that goes
  bool hasEffect_ = false;
};

Json::binary_t binary(string_view bytes) { return Json::binary_t({bytes.begin(), bytes.end()}); }
std::string bytesOf(const Json& json) {
  const auto& bytes = json.get_binary();
  return {bytes.begin(), bytes.end()};
}

std::string hashOf(string_view bytes) {
  ContentHash hash;
  hash.add(bytes);
  return hash.value();
}

}  // namespace

void commitLists(std::span<ListChange> changes, FileService& files, Log& log,
                 const CommitOptions& options, const std::function<void()>& prepared) {
  std::deque<ListCommit> commits;
  try {
    for (ListChange& change : changes) commits.emplace_back(change, files, log, options).prepare();
    prepared();
    for (ListCommit& commit : commits) commit.takeEffect();
  } catch (...) {
    for (ListCommit& commit : commits) commit.putBack();
    throw;
  }
  for (ListCommit& commit : commits) commit.finish(log);
}

std::string reversalOf(std::span<const ListChange> changes, const std::string& root) {
  Json list = Json::array();
  for (const ListChange& change : changes) {
    Json entry;
    entry["path"] =
        binary(liesIn(change.path, root) ? string_view(change.path).substr(root.size() + 1)
                                         : string_view(change.path));
    if (change.after) entry["after"] = binary(hashOf(*change.after));
    if (change.before) {
      // What both have at the beginning and at the end is in the file.
      const string_view before = *change.before,
                        after = change.after ? string_view(*change.after) : string_view();
      const auto begin = static_cast<size_t>(
          std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first -
          before.begin());
      size_t end = 0;
      while (end < std::min(before.size(), after.size()) - begin &&
             before[before.size() - 1 - end] == after[after.size() - 1 - end])
        ++end;
      entry["same"] = {begin, end};
      entry["before"] = binary(before.substr(begin, before.size() - begin - end));
    }
    list.push_back(std::move(entry));
  }
  const auto bytes = Json::to_cbor(Json{{"lists", std::move(list)}});
  return {bytes.begin(), bytes.end()};
}

std::optional<std::vector<ListChange>> changesBack(string_view reversal, const std::string& root,
                                                   FileService& files) {
  std::vector<ListChange> changes;
  try {
    const Json document = Json::from_cbor(reversal);
    for (const Json& entry : document.at("lists")) {
      ListChange change;
      change.path = bytesOf(entry.at("path"));
      if (!change.path.starts_with('/')) change.path.insert(0, root + "/");
      if ((change.expected = files.status(change.path))) change.before = files.readAll(change.path);
      if (change.before.has_value() != entry.contains("after")) return std::nullopt;
      if (change.before && hashOf(*change.before) != bytesOf(entry["after"])) return std::nullopt;
      if (entry.contains("before")) {
        const size_t begin = entry.at("same").at(0), end = entry.at("same").at(1);
        const std::string now = change.before.value_or("");
        if (begin + end > now.size()) return std::nullopt;
        change.after =
            now.substr(0, begin) + bytesOf(entry["before"]) + now.substr(now.size() - end);
      }
      changes.push_back(std::move(change));
    }
  } catch (const Json::exception&) {
    return std::nullopt;
  } catch (const FileError&) {  // a list that cannot be read is not what was written
    return std::nullopt;
  }
  return changes;
}

}  // namespace kestrel
