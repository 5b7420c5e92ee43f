#include "platform/preferences.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "foundation/text_helpers.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/settings.h"

namespace kestrel {
namespace {

bool isTrue(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  return !text.empty() && std::string_view("123456789yYtT").find(text[0]) != std::string_view::npos;
}

std::int64_t asInteger(const PreferenceValue* value) {
  if (!value) return 0;
  if (const auto* flag = std::get_if<bool>(value)) return *flag ? 1 : 0;
  if (const auto* number = std::get_if<std::int64_t>(value)) return *number;
  if (const auto* text = std::get_if<std::string>(value)) return integerValue(Value(*text));
  return 0;
}

using nlohmann::json;

constexpr std::string_view sectionLine = "[settings]";

/// A line of the file, and what it says if it is one of ours.
struct Line {
  enum class Sort { other, section, setting, bad };

  std::string_view text;  ///< with its line end, if it has one
  Sort sort = Sort::other;
  std::string_view key;
  std::string_view value;
};

std::vector<Line> linesOf(std::string_view text) {
  std::vector<Line> lines;
  bool ours = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    Line line{text.substr(0, end), Line::Sort::other, {}, {}};
    text.remove_prefix(end);
    const std::string_view content = trimmed(line.text);
    if (content.starts_with('[')) {
      ours = content == sectionLine;
      if (ours) line.sort = Line::Sort::section;
    } else if (ours && !content.empty() && content[0] != ';' && content[0] != '#') {
      const std::size_t sign = content.find('=');
      line.key = trimmed(content.substr(0, sign));
      line.sort = sign == std::string_view::npos || line.key.empty() ? Line::Sort::bad
                                                                     : Line::Sort::setting;
      if (line.sort == Line::Sort::setting) line.value = trimmed(content.substr(sign + 1));
    }
    lines.push_back(line);
  }
  return lines;
}

/// Nothing for a value that is neither a text nor a list of texts.
std::optional<PreferenceValue> parsed(std::string_view value) {
  if (!value.starts_with('"') && !value.starts_with('[')) return std::string(value);
  const json parsedValue = json::parse(value, nullptr, false);
  if (parsedValue.is_string()) return parsedValue.get<std::string>();
  if (!parsedValue.is_array()) return std::nullopt;
  std::vector<std::string> texts;
  for (const json& entry : parsedValue) {
    if (!entry.is_string()) return std::nullopt;
    texts.push_back(entry.get<std::string>());
  }
  return texts;
}

/// As they stand, texts keep even bytes that are no UTF-8, as paths may have them.
bool needsQuotes(std::string_view text) {
  return trimmed(text) != text || text.starts_with('"') || text.starts_with('[') ||
         text.find_first_of(std::string_view("\n\r\0", 3)) != std::string_view::npos;
}

std::string written(const PreferenceValue& value) {
  constexpr auto replaceBadUtf8 = json::error_handler_t::replace;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "1" : "0";
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* texts = std::get_if<std::vector<std::string>>(&value))
    return json(*texts).dump(-1, ' ', false, replaceBadUtf8);
  const auto& text = std::get<std::string>(value);
  return needsQuotes(text) ? json(text).dump(-1, ' ', false, replaceBadUtf8) : text;
}

/// The file's text with the last line of the setting (the one that counts) replaced, all its lines
/// removed, or a new line at the section's end.
std::string edited(std::string_view text, std::string_view key,
                   const std::optional<PreferenceValue>& value) {
  const std::vector<Line> lines = linesOf(text);
  std::size_t last = lines.size();
  std::size_t section = lines.size();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].key == key) last = i;
    if (lines[i].sort == Line::Sort::section || !lines[i].key.empty()) section = i;
  }
  const std::string newLine =
      value ? std::string(key) + "=" + written(*value) + "\n" : std::string();
  std::string result;
  const auto append = [&result](std::string_view line) {
    if (!result.empty() && !result.ends_with('\n')) result += '\n';
    result += line;
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].key != key || (value && i != last)) append(lines[i].text);
    if (i == last || (last == lines.size() && i == section)) append(newLine);
  }
  if (value && last == lines.size() && section == lines.size())
    append(std::string(sectionLine) + "\n" + newLine);
  return result;
}

}  // namespace

bool Preferences::boolean(std::string_view key) const {
  const auto found = value(key);
  if (!found) return false;
  if (const auto* text = std::get_if<std::string>(&*found)) return isTrue(*text);
  return asInteger(&*found) != 0;
}

std::int64_t Preferences::integer(std::string_view key) const {
  const auto found = value(key);
  return asInteger(found ? &*found : nullptr);
}

std::string Preferences::text(std::string_view key) const {
  auto found = value(key);
  if (!found || std::holds_alternative<std::vector<std::string>>(*found)) return {};
  if (auto* text = std::get_if<std::string>(&*found)) return std::move(*text);
  return std::to_string(asInteger(&*found));
}

std::vector<std::string> Preferences::textArray(std::string_view key) const {
  auto found = value(key);
  if (!found) return {};
  auto* texts = std::get_if<std::vector<std::string>>(&*found);
  return texts ? std::move(*texts) : std::vector<std::string>();
}

const PreferenceValue* Preferences::find(std::string_view key) const {
  for (const Values* values : {&values_, &defaults_})
    if (const auto entry = values->find(key); entry != values->end()) return &entry->second;
  return nullptr;
}

void Preferences::updateLive(std::string_view key) {
  if (const auto entry = live_.find(key); entry != live_.end())
    entry->second = asInteger(find(key));
}

std::optional<PreferenceValue> Preferences::value(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  const PreferenceValue* found = find(key);
  return found ? std::optional(*found) : std::nullopt;
}

void Preferences::set(std::string_view key, PreferenceValue value) {
  const std::lock_guard one(changing_);
  {
    const std::lock_guard lock(mutex_);
    const auto [entry, added] = values_.try_emplace(std::string(key), value);
    if (!added && entry->second == value) return;
    entry->second = value;
    updateLive(key);
  }
  changed(key, std::move(value));
}

void Preferences::remove(std::string_view key) {
  const std::lock_guard one(changing_);
  {
    const std::lock_guard lock(mutex_);
    const auto entry = values_.find(key);
    if (entry == values_.end()) return;
    values_.erase(entry);
    updateLive(key);
  }
  changed(key, std::nullopt);
}

void Preferences::registerDefault(std::string_view key, PreferenceValue value) {
  const std::lock_guard lock(mutex_);
  defaults_.insert_or_assign(std::string(key), std::move(value));
  updateLive(key);
}

const std::atomic<std::int64_t>& Preferences::liveInteger(std::string_view key) {
  const std::lock_guard lock(mutex_);
  const auto [entry, added] = live_.try_emplace(std::string(key), 0);
  if (added) entry->second = asInteger(find(key));
  return entry->second;
}

void Preferences::setStored(std::string_view key, PreferenceValue value) {
  const std::lock_guard lock(mutex_);
  values_.insert_or_assign(std::string(key), std::move(value));
  updateLive(key);
}

void Preferences::changed(std::string_view, const std::optional<PreferenceValue>&) {}

FilePreferences::FilePreferences(std::string path, FileService& files, Log& log)
    : path_(std::move(path)), files_(files), log_(log) {
  try {
    read();
    files_.createDirectories(std::filesystem::path(path_).parent_path().string());
  } catch (const FileError& error) {
    if (error.code != ENOENT) log_.line(error.what());
  }
}

void FilePreferences::read() {
  const std::string text = files_.readAll(path_);
  std::size_t number = 0;
  for (const Line& line : linesOf(text)) {
    ++number;
    if (line.sort == Line::Sort::other || line.sort == Line::Sort::section) continue;
    auto value = line.sort == Line::Sort::setting ? parsed(line.value) : std::nullopt;
    if (!value)
      log_.line(path_ + ", line " + std::to_string(number) +
                ": this is no setting and is passed over.");
    else if (!settings::isForOneRun(line.key))
      setStored(line.key, *std::move(value));
  }
}

void FilePreferences::changed(std::string_view key, const std::optional<PreferenceValue>& value) {
  if (settings::isForOneRun(key)) return;
  try {
    std::string text;
    try {
      text = files_.readAll(path_);
    } catch (const FileError& error) {
      if (error.code != ENOENT) throw;
      files_.createDirectories(std::filesystem::path(path_).parent_path().string());
    }
    const std::string newText = edited(text, key, value);
    if (newText != text) files_.writeAtomically(path_, newText);
  } catch (const FileError& error) {
    log_.line(error.what());
    if (const auto tell = std::exchange(tell_, nullptr)) tell(error.message);
  }
}

namespace settings {

bool isForOneRun(std::string_view key) noexcept {
  return key == completedLaunch || key == trackLibraryInitialized || key == cancelGetDupes;
}

void registerFirstValues(Preferences& preferences) {
  preferences.registerDefault(selectedPlaylistPid, std::string());
  preferences.registerDefault(copyToPlaylist, std::vector<std::string>{"", ""});
  preferences.registerDefault(filterMatrixButton, std::int64_t{1});
  preferences.registerDefault(keeperMode, std::int64_t{0});
  preferences.registerDefault(aproxValue, std::int64_t{1});
  preferences.registerDefault(openLastLibrary, true);
  preferences.registerDefault(colorsByState, true);
}

}  // namespace settings
}  // namespace kestrel
